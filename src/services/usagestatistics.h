#pragma once

#include <functional>

class QString;

/// Reports one event of the user's work, such as "cap_30_02", to the product's usage statistics.
/// Without a statistics library nothing happens. Any thread.
void recordUsage(const char *code);

/// Takes every event from now on; an empty function ends that. Meant for the statistics binding and tests.
void setUsageRecorder(std::function<void(const QString &code)> recorder);

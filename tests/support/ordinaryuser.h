#pragma once

#include <QString>

#include <functional>

/// Runs `job` in a child process without an administrator's rights, so that access rights hold also where
/// the tests run as root. The job gets a private folder that is removed afterwards and may use files, but no
/// GUI and no event loop. Returns the job's result, or -1 when it did not end by itself.
int asOrdinaryUser(const std::function<int(const QString &folder)> &job);

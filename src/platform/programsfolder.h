#pragma once

#include <QString>

namespace platform {

/// The folder below which a maker installs programs for everybody, each in a folder of its maker's.
QString programsFolder();

} // namespace platform

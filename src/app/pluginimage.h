#pragma once

#include <QString>

/// Makes the folder in the work folder where a plug-in finds the picture that it is to work on, and returns
/// the path for a picture of that moment (milliseconds since the epoch); a second one of the same moment has
/// the same path.
///
/// Empty when there is no such place: an id that is no file's name would lead out of the work folder, and a
/// path with a double quote or a vertical bar could not be told to a plug-in. A normal exit clears the folder
/// away.
QString makePluginImagePath(const QString &pluginId, qint64 time);

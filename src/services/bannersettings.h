#pragma once

class QString;

/// What the optional file "rconfig.json" in the program's folder says of the banners.
struct BannerSettings {
    /// Milliseconds for which a frame waits with a new size, so that a burst of changes costs one.
    int debounce = 300;
    /// Seconds for which a banner that the user has closed stays away.
    int showInterval = 24 * 60 * 60;

    /// Whatever the file does not say, or says in another form than a number from 0 on, is as above; so is
    /// all of it where the file is missing or no JSON object.
    static BannerSettings read(const QString &path);
};

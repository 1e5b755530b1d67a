#pragma once

class QString;

/// Who the desktop takes this process for: groups its windows, finds its icon and desktop entry.
class ApplicationIdentity {
public:
    virtual ~ApplicationIdentity() = default;

    /// Announces the id before any window exists; an empty id does nothing.
    virtual void setApplicationId(const QString &id) = 0;
};

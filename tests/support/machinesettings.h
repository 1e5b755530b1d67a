#pragma once

#include <QString>

/// The settings of the maker's products for the whole machine, which an administrator would write, as long as
/// it lives. One at a time, in a test's own folder.
class MachineSettings {
public:
    MachineSettings();
    ~MachineSettings();
    MachineSettings(const MachineSettings &) = delete;
    MachineSettings &operator=(const MachineSettings &) = delete;

    /// Writes a value under the product's key and leaves its others.
    void set(const QString &product, const QString &name, const QString &value) const;
    /// Takes the product's key away.
    void remove(const QString &product) const;

private:
    static QString path(const QString &product);
};

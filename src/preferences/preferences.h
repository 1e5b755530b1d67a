#pragma once

#include <QString>
#include <QVariant>

#include <vector>

class ConfigurationLocation;

/// A table of typed, named items addressed by index, which loads from and saves to one location of the
/// product's settings and writes only what has changed.
///
/// An index at or beyond the count does nothing or gives the default. A setter of another type changes
/// the item's type, after which the getter of the old type gives its default. GUI thread only.
///
/// A null string, unlike an empty one, is final: an item that holds it takes no other text.
class Preferences {
public:
    enum ItemType { None = 0, Int = 1, Bool = 2, String = 3 };

    Preferences() = default;
    virtual ~Preferences() = default;
    Preferences(const Preferences &) = delete;
    Preferences &operator=(const Preferences &) = delete;

    /// Replaces the table by `count` empty items of type None; false for 0.
    bool Resize(int count);
    void Clear();
    bool HasItems() const;

    void Define(int index, const QString &name, bool value);
    void Define(int index, const QString &name, int value);
    void Define(int index, const QString &name, const QString &value);
    /// A text literal would convert to bool before it converts to a string.
    void Define(int index, const QString &name, const char *value) = delete;

    QString Name(int index) const;
    int Type(int index) const;

    bool GetBool(int index, bool defaultValue) const;
    int GetInt(int index, int defaultValue) const;
    QString GetString(int index, const QString &defaultValue) const;
    void SetBool(int index, bool value);
    void SetInt(int index, int value);
    void SetString(int index, const QString &value);

    /// Reads every named item that the location holds; the number of values read. `root` and `key` together
    /// are the location's path. What is no number counts as missing for an int, which keeps its value.
    int Load(const QString &root, const QString &key);
    /// Writes every named item that differs from the location; the number of values written. What the
    /// location refuses counts as unsaved, and goes out with the next save.
    int Save(const QString &root, const QString &key);

protected:
    /// `Save` into a location that is open already.
    int save(ConfigurationLocation &location);
    /// A stored value as an int; invalid when it is no number.
    static QVariant intFromStored(const QVariant &stored);

private:
    struct Item {
        QString name;
        int type = None;
        QVariant value = 0;
        bool saved = false;
    };
    const Item *item(int index) const;
    Item *item(int index);
    void set(int index, int type, const QVariant &value);
    bool loadItem(int index, const QVariant &stored);

    std::vector<Item> m_items;
};

#include "preferences/preferences.h"

#include "platform/configuration.h"

namespace {

QString locationName(const QString &root, const QString &key) {
    return QStringLiteral("%0%1").arg(root, key);
}

/// A null text would lock the item: `SetString` leaves null values alone.
QString storedString(const QVariant &stored) {
    const QString text = stored.toString();
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

bool Preferences::Resize(int count) {
    if (count <= 0)
        return false;
    Clear();
    m_items.resize(static_cast<std::size_t>(count));
    return true;
}

void Preferences::Clear() {
    m_items.clear();
}

bool Preferences::HasItems() const {
    return !m_items.empty();
}

void Preferences::Define(int index, const QString &name, bool value) {
    if (Item *target = item(index)) {
        target->name = name;
        SetBool(index, value);
    }
}

void Preferences::Define(int index, const QString &name, int value) {
    if (Item *target = item(index)) {
        target->name = name;
        SetInt(index, value);
    }
}

void Preferences::Define(int index, const QString &name, const QString &value) {
    if (Item *target = item(index)) {
        target->name = name;
        SetString(index, value);
    }
}

QString Preferences::Name(int index) const {
    const Item *found = item(index);
    return found ? found->name : QString();
}

int Preferences::Type(int index) const {
    const Item *found = item(index);
    return found ? found->type : None;
}

bool Preferences::GetBool(int index, bool defaultValue) const {
    const Item *found = item(index);
    return found && (found->type == Int || found->type == Bool) ? found->value.toBool() : defaultValue;
}

int Preferences::GetInt(int index, int defaultValue) const {
    const Item *found = item(index);
    return found && found->type == Int ? found->value.toInt() : defaultValue;
}

QString Preferences::GetString(int index, const QString &defaultValue) const {
    const Item *found = item(index);
    return found && found->type == String ? found->value.toString() : defaultValue;
}

void Preferences::SetBool(int index, bool value) {
    set(index, Bool, value);
}

void Preferences::SetInt(int index, int value) {
    set(index, Int, value);
}

void Preferences::SetString(int index, const QString &value) {
    const Item *target = item(index);
    if (target && !target->value.isNull())
        set(index, String, value);
}

int Preferences::Load(const QString &root, const QString &key) {
    const ConfigurationLocation location(locationName(root, key));
    int count = 0;
    for (int index = 0; index < static_cast<int>(m_items.size()); ++index) {
        const QString name = Name(index);
        if (!name.isEmpty() && loadItem(index, location.value(name)))
            ++count;
    }
    return count;
}

int Preferences::Save(const QString &root, const QString &key) {
    ConfigurationLocation location(locationName(root, key));
    return save(location);
}

int Preferences::save(ConfigurationLocation &location) {
    int count = 0;
    for (Item &item : m_items) {
        if (item.name.isEmpty() || item.saved)
            continue;
        // What is refused now stays for the next save: nobody is told, and nothing may be lost for that.
        item.saved =
            location.setValue(item.name, item.type == Bool ? QVariant(item.value.toInt()) : item.value);
        count += item.saved ? 1 : 0;
    }
    return count;
}

// Colours use all 32 bits, and a writer that knows them as unsigned writes the upper half as large numbers.
QVariant Preferences::intFromStored(const QVariant &stored) {
    // Not the conversions of QVariant, which cut larger numbers to 32 bits.
    const QString text = stored.toString();
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (isNumber)
        return value;
    const uint bits = text.toUInt(&isNumber);
    return isNumber ? QVariant(static_cast<int>(bits)) : QVariant();
}

const Preferences::Item *Preferences::item(int index) const {
    return index >= 0 && index < static_cast<int>(m_items.size()) ? &m_items[static_cast<std::size_t>(index)]
                                                                  : nullptr;
}

Preferences::Item *Preferences::item(int index) {
    return const_cast<Item *>(std::as_const(*this).item(index));
}

void Preferences::set(int index, int type, const QVariant &value) {
    Item *target = item(index);
    if (!target || (target->type == type && target->value == value))
        return;
    target->type = type;
    target->value = value;
    target->saved = false;
}

bool Preferences::loadItem(int index, const QVariant &stored) {
    if (!stored.isValid())
        return false;
    switch (Type(index)) {
    case Int: {
        const QVariant number = intFromStored(stored);
        if (!number.isValid())
            return false;
        SetInt(index, number.toInt());
        break;
    }
    case Bool:
        SetBool(index, stored.toBool());
        break;
    case String:
        SetString(index, storedString(stored));
        break;
    default:
        return false;
    }
    item(index)->saved = true;
    return true;
}

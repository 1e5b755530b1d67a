#include "preferences/tindrapreferences.h"

#include "platform/configuration.h"

#include <memory>

namespace {

constexpr int SizePresetCount = 6;
constexpr int CustomColorCount = 4;

QString userRoot() {
    return QStringLiteral("HKEY_CURRENT_USER\\");
}

QString itemsKey() {
    return QStringLiteral("SOFTWARE\\Norvane\\Tindra\\Config");
}

QString listKey(const char *name) {
    return itemsKey() + QLatin1Char('\\') + QLatin1String(name);
}

QString sizePresetsKey() {
    return listKey("SizePresets");
}

QString inGroup(int group, const char *name) {
    return QStringLiteral("%1/%2").arg(group).arg(QLatin1String(name));
}

/// A list's numbered group, as seen from the location of the items.
QString groupOf(const QString &key, int group) {
    return key.mid(itemsKey().size() + 1) + QLatin1Char('/') + QString::number(group);
}

/// Outlives its object, so that whoever asks late in the end of the process gets null instead of a ruin.
bool instanceDestroyed = false;

struct InstanceHolder {
    std::unique_ptr<TindraPreferences> instance;
    ~InstanceHolder() {
        instance.reset();
        instanceDestroyed = true;
    }
};

} // namespace

QString TindraPreferences::FigureFillCustomColorKey() {
    return listKey("FigureFillCustomColor");
}

QString TindraPreferences::FigureLineCustomColorKey() {
    return listKey("FigureLineCustomColor");
}

QString TindraPreferences::PenCustomColorKey() {
    return listKey("PenCustomColor");
}

QString TindraPreferences::HighlighterCustomColorKey() {
    return listKey("HighlighterCustomColor");
}

QString TindraPreferences::TextCustomColorKey() {
    return listKey("TextCustomColor");
}

TindraPreferences *TindraPreferences::instance() {
    if (instanceDestroyed)
        return nullptr;
    static InstanceHolder holder{std::unique_ptr<TindraPreferences>(new TindraPreferences)};
    return holder.instance.get();
}

void TindraPreferences::resetForTesting() {
    TindraPreferences *preferences = instance();
    if (!preferences)
        return;
    preferences->Clear();
    preferences->m_sizePresets.clear();
    preferences->m_customColors.clear();
}

bool TindraPreferences::Init() {
    if (HasItems())
        return true;
    if (!Resize(ItemCount))
        return false;
    defineItems();
    Reload();
    migrate();
    return true;
}

void TindraPreferences::Reload() {
    loadSizePresets();
    loadCustomColors();
    Load(userRoot(), itemsKey());
}

void TindraPreferences::SaveAll() {
    // One for all: when another program keeps the file to itself, the wait for it is spent once.
    ConfigurationLocation location(userRoot() + itemsKey());
    save(location);
    saveSizePresets(location);
    saveCustomColors(location);
}

void TindraPreferences::GetCustomColors(const QString &key, QList<QColor> &colors) const {
    for (const QColor &color : m_customColors.value(key)) {
        if (color.isValid())
            colors.append(color);
    }
}

void TindraPreferences::SetCustomColors(const QString &key, const QList<QColor> &colors) {
    if (customColorKeys().contains(key))
        m_customColors.insert(key, colors);
}

void TindraPreferences::GetSizePresets(QList<QSize> &presets) const {
    presets = m_sizePresets;
}

void TindraPreferences::SetSizePresets(const QList<QSize> &presets) {
    m_sizePresets = presets;
}

QColor TindraPreferences::color(Id id) const {
    return colorFromInt(GetInt(id, defaultInt(id)), true);
}

QColor TindraPreferences::colorFromInt(int value, bool withAlpha) {
    const uint bits = static_cast<uint>(value);
    const auto channel = [bits](int shift) { return static_cast<int>(bits >> shift & 0xFF); };
    return QColor(channel(0), channel(8), channel(16), withAlpha ? channel(24) : 255);
}

int TindraPreferences::colorToInt(const QColor &color) {
    const auto channel = [](int value, int shift) { return static_cast<uint>(value) << shift; };
    return static_cast<int>(channel(color.alpha(), 24) | channel(color.blue(), 16) |
                            channel(color.green(), 8) | channel(color.red(), 0));
}

QStringList TindraPreferences::customColorKeys() {
    QStringList keys{FigureFillCustomColorKey(), FigureLineCustomColorKey(), PenCustomColorKey(),
                     HighlighterCustomColorKey(), TextCustomColorKey()};
    keys.sort();
    return keys;
}

void TindraPreferences::loadSizePresets() {
    m_sizePresets.clear();
    const ConfigurationLocation location(userRoot() + sizePresetsKey());
    for (int group = 0; group < SizePresetCount; ++group) {
        const QVariant width = intFromStored(location.value(inGroup(group, "width")));
        const QVariant height = intFromStored(location.value(inGroup(group, "height")));
        if (!width.isValid() || !height.isValid())
            return;
        m_sizePresets.append(QSize(width.toInt(), height.toInt()));
    }
}

void TindraPreferences::saveSizePresets(ConfigurationLocation &location) const {
    for (int i = 0; i < SizePresetCount; ++i) {
        const QString group = groupOf(sizePresetsKey(), i);
        if (i < m_sizePresets.size()) {
            location.setValue(group + QStringLiteral("/width"), m_sizePresets[i].width());
            location.setValue(group + QStringLiteral("/height"), m_sizePresets[i].height());
        } else {
            location.remove(group);
        }
    }
}

void TindraPreferences::loadCustomColors() {
    m_customColors.clear();
    for (const QString &key : customColorKeys()) {
        QList<QColor> &colors = m_customColors[key];
        const ConfigurationLocation location(userRoot() + key);
        for (int group = 0; group < CustomColorCount; ++group) {
            const QVariant stored = intFromStored(location.value(inGroup(group, "CustomColor")));
            if (!stored.isValid())
                break;
            colors.append(colorFromInt(stored.toInt(), true));
        }
    }
}

void TindraPreferences::saveCustomColors(ConfigurationLocation &location) const {
    for (const QString &key : customColorKeys()) {
        const QList<QColor> colors = m_customColors.value(key);
        for (int i = 0; i < CustomColorCount; ++i) {
            const QString group = groupOf(key, i);
            if (i < colors.size())
                location.setValue(group + QStringLiteral("/CustomColor"), colorToInt(colors[i]));
            else
                location.remove(group);
        }
    }
}

void TindraPreferences::migrate() {
    if (!GetBool(HideEditor, false))
        return;
    SetBool(HideEditor, false);
    SetBool(SkipEditorWnd, true);
    SetBool(ShowFileDlgAfterCapture, true);
    SetBool(CopyToClipboard, true);
}

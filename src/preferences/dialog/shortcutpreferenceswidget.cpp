#include "preferences/dialog/shortcutpreferenceswidget.h"

#include "popups/combobox.h"
#include "ui/named.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

#include <iterator>

/// One shortcut. The names of its widgets begin with `name`.
struct ShortcutPreferencesWidget::Row {
    const char *name;
    const char *text;
    TindraPreferences::Id use;
    TindraPreferences::Id modifiers;
    TindraPreferences::Id key;
    void (ShortcutPreferencesWidget::*toggled)();
};

namespace {

using P = TindraPreferences;

constexpr int GridSpacing = 12; // at 96 DPI

/// In the order in which a row shows them, which is not that of their bits.
struct ModifierBox {
    const char *name;
    const char *text;
    int bit;
};
constexpr ModifierBox Modifiers[] = {
    {"Ctrl_", QT_TRANSLATE_NOOP("ShortcutPreferencesWidget", "Ctrl"), HotKeyModifier::Ctrl},
    {"Alt_", QT_TRANSLATE_NOOP("ShortcutPreferencesWidget", "Alt"), HotKeyModifier::Alt},
    {"Shift_", QT_TRANSLATE_NOOP("ShortcutPreferencesWidget", "Shift"), HotKeyModifier::Shift},
    {"Win_", QT_TRANSLATE_NOOP("ShortcutPreferencesWidget", "Win"), HotKeyModifier::Win},
};

} // namespace

const ShortcutPreferencesWidget::Row &ShortcutPreferencesWidget::row(int mode) {
    using W = ShortcutPreferencesWidget;
    static constexpr Row rows[] = {
        {"region", QT_TR_NOOP("Region"), P::UseHotKey, P::HotKeyMod, P::HotKeyChar,
         &W::onToggledShortcutRegion},
        {"window", QT_TR_NOOP("Window"), P::UseHotKey_W, P::HotKeyMod_W, P::HotKeyChar_W,
         &W::onToggledShortcutWindow},
        {"childwnd", QT_TR_NOOP("ChildWnd"), P::UseHotKey_C, P::HotKeyMod_C, P::HotKeyChar_C,
         &W::onToggledShortcutChildWnd},
        {"fullscreen", QT_TR_NOOP("Fullscreen"), P::UseHotKey_F, P::HotKeyMod_F, P::HotKeyChar_F,
         &W::onToggledShortcutFullscreen},
        {"scroll", QT_TR_NOOP("Scroll"), P::UseHotKey_S, P::HotKeyMod_S, P::HotKeyChar_S,
         &W::onToggledShortcutScroll},
        {"fixedregion", QT_TR_NOOP("FixedRegion"), P::UseHotKey_FR, P::HotKeyMod_FR, P::HotKeyChar_FR,
         &W::onToggledShortcutFixedRegion},
    };
    static_assert(std::size(rows) == ModeCount, "one row a mode");
    return rows[mode];
}

ShortcutPreferencesWidget::ShortcutPreferencesWidget(QWidget *parent)
    : PreferencesPage(parent), m_keys(hotKeyEntries()) {
    addPrintScreen();
    addShortcuts();
}

void ShortcutPreferencesWidget::addPrintScreen() {
    QVBoxLayout *section = addSection(tr("Print Screen Key Preferences"));
    QHBoxLayout *line = addRow(section);
    auto *use = named(new QCheckBox(tr("Use Print Screen key as"), this), "usePrintScreenKey_");
    m_boxes.add(use, P::UsePrintScreen);
    m_captureMode = named(new ComboBox(this), "captureMode_");
    // By the numbers that are stored.
    m_captureMode->addItems({tr("Region Capture"), tr("Window Capture"), tr("Child Window Capture"),
                             tr("Fullscreen Capture"), tr("Scroll Capture"), tr("Fixed Region Capture")});
    auto *label = new QLabel(tr("mode"), this);
    label->setBuddy(m_captureMode);
    line->addWidget(use);
    line->addWidget(m_captureMode);
    line->addWidget(label);
    line->addStretch(1);
}

void ShortcutPreferencesWidget::addShortcuts() {
    QVBoxLayout *section = addSection(tr("Cpature Shortcut Preferences"));
    addExplanation(section, tr("You can set or off shortcut per each capture mode."));
    auto *grid = new QGridLayout;
    // One for both directions: a form is scaled by its one spacing.
    grid->setSpacing(GridSpacing);
    section->addLayout(grid);
    for (int mode = 0; mode < ModeCount; ++mode) {
        m_rows.append(addRowWidgets(grid, mode));
        connect(m_rows.last().use, &QCheckBox::toggled, this, row(mode).toggled);
    }
    grid->setColumnStretch(grid->columnCount(), 1);
}

ShortcutPreferencesWidget::RowWidgets ShortcutPreferencesWidget::addRowWidgets(QGridLayout *grid, int mode) {
    const Row &definition = row(mode);
    const QByteArray name(definition.name);
    RowWidgets widgets{named(new QCheckBox(tr(definition.text), this), name + '_'), {}, nullptr};
    m_boxes.add(widgets.use, definition.use);
    int column = 0;
    grid->addWidget(widgets.use, mode, column);
    for (const ModifierBox &modifier : Modifiers) {
        widgets.modifiers.append(named(new QCheckBox(tr(modifier.text), this), name + modifier.name));
        grid->addWidget(widgets.modifiers.last(), mode, ++column);
    }
    widgets.key = named(new ComboBox(this), name + "Key_");
    for (const HotKeyEntry &entry : m_keys)
        widgets.key->addItem(entry.label, entry.code);
    widgets.key->setAccessibleName(widgets.use->text());
    grid->addWidget(widgets.key, mode, ++column);
    return widgets;
}

void ShortcutPreferencesWidget::load() {
    const P *preferences = P::instance();
    m_boxes.load();
    const int captureMode = preferences->GetInt(P::PrintScreenCaptureMode, 0);
    const bool isKnown = captureMode >= 0 && captureMode < m_captureMode->count();
    m_captureMode->setCurrentIndex(isKnown ? captureMode : 0);
    for (int mode = 0; mode < ModeCount; ++mode) {
        const Row &definition = row(mode);
        setModifiers(m_rows[mode],
                     preferences->GetInt(definition.modifiers, P::defaultInt(definition.modifiers)));
        setKey(m_rows[mode], preferences->GetInt(definition.key, P::defaultInt(definition.key)));
        // The box may have been as it is now, and then it tells nothing.
        enableRow(Mode(mode));
    }
}

void ShortcutPreferencesWidget::save() {
    P *preferences = P::instance();
    m_boxes.save();
    preferences->SetInt(P::PrintScreenCaptureMode, m_captureMode->currentIndex());
    for (int mode = 0; mode < ModeCount; ++mode) {
        preferences->SetInt(row(mode).modifiers, modifiers(m_rows[mode]));
        preferences->SetInt(row(mode).key, m_rows[mode].key->currentData().toInt());
    }
}

void ShortcutPreferencesWidget::setDefaults() {
    m_boxes.setDefaults();
    m_captureMode->setCurrentIndex(P::defaultInt(P::PrintScreenCaptureMode));
    for (int mode = 0; mode < ModeCount; ++mode) {
        setModifiers(m_rows[mode], P::defaultInt(row(mode).modifiers));
        setKey(m_rows[mode], P::defaultInt(row(mode).key));
    }
}

void ShortcutPreferencesWidget::enableRow(Mode mode) {
    const RowWidgets &widgets = m_rows[mode];
    const bool isUsed = widgets.use->isChecked();
    for (QCheckBox *modifier : widgets.modifiers)
        modifier->setEnabled(isUsed);
    widgets.key->setEnabled(isUsed);
}

void ShortcutPreferencesWidget::setModifiers(const RowWidgets &widgets, int modifiers) {
    for (int i = 0; i < widgets.modifiers.size(); ++i)
        widgets.modifiers[i]->setChecked(modifiers & Modifiers[i].bit);
}

int ShortcutPreferencesWidget::modifiers(const RowWidgets &widgets) {
    int sum = 0;
    for (int i = 0; i < widgets.modifiers.size(); ++i) {
        if (widgets.modifiers[i]->isChecked())
            sum += Modifiers[i].bit;
    }
    return sum;
}

// A key that the list lacks shows as its first.
void ShortcutPreferencesWidget::setKey(const RowWidgets &widgets, int code) const {
    for (int index = 0; index < m_keys.size(); ++index) {
        if (m_keys[index].code == code) {
            widgets.key->setCurrentIndex(index);
            return;
        }
    }
    widgets.key->setCurrentIndex(0);
}

void ShortcutPreferencesWidget::onToggledShortcutRegion() {
    enableRow(Region);
}

void ShortcutPreferencesWidget::onToggledShortcutWindow() {
    enableRow(Window);
}

void ShortcutPreferencesWidget::onToggledShortcutChildWnd() {
    enableRow(ChildWnd);
}

void ShortcutPreferencesWidget::onToggledShortcutFullscreen() {
    enableRow(Fullscreen);
}

void ShortcutPreferencesWidget::onToggledShortcutScroll() {
    enableRow(Scroll);
}

void ShortcutPreferencesWidget::onToggledShortcutFixedRegion() {
    enableRow(FixedRegion);
}

#include "preferences/dialog/checkboxsettings.h"

#include <QCheckBox>

void CheckBoxSettings::add(QCheckBox *box, TindraPreferences::Id id) {
    m_entries.append({box, id});
}

void CheckBoxSettings::load() const {
    const TindraPreferences *preferences = TindraPreferences::instance();
    for (const Entry &entry : m_entries)
        entry.box->setChecked(preferences->GetBool(entry.id, TindraPreferences::defaultBool(entry.id)));
}

void CheckBoxSettings::save() const {
    TindraPreferences *preferences = TindraPreferences::instance();
    for (const Entry &entry : m_entries)
        preferences->SetBool(entry.id, entry.box->isChecked());
}

void CheckBoxSettings::setDefaults() const {
    for (const Entry &entry : m_entries)
        entry.box->setChecked(TindraPreferences::defaultBool(entry.id));
}

#pragma once

#include "preferences/dialog/checkboxsettings.h"
#include "preferences/dialog/preferencespage.h"

/// What the list of recent captures asks and tells.
class HistoryPreferencesWidget : public PreferencesPage {
    Q_OBJECT
public:
    explicit HistoryPreferencesWidget(QWidget *parent = nullptr);

    void load() override { m_boxes.load(); }
    void save() override { m_boxes.save(); }
    void setDefaults() override { m_boxes.setDefaults(); }

private:
    CheckBoxSettings m_boxes;
};

#include "preferences/dialog/preferencespage.h"

#include "preferences/dialog/formparts.h"
#include "preferences/dialog/sectiontitle.h"
#include "ui/named.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace {

// At 96 DPI.
constexpr int SectionSpacing = 18;
constexpr int Indent = 8; // of the rows below their title

} // namespace

PreferencesPage::PreferencesPage(QWidget *parent) : QWidget(parent), m_column(new QVBoxLayout) {
    // A page that is not shown has no style yet, and what it believes to need must not squeeze the others.
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(0);
    page->addLayout(m_column);
    page->addStretch(1);
    m_column->setSpacing(SectionSpacing);
}

QVBoxLayout *PreferencesPage::addSection(const QString &title) {
    auto *section = new QVBoxLayout;
    section->setSpacing(FormParts::RowSpacing);
    section->addWidget(new SectionTitle(title, this));
    auto *rows = new QVBoxLayout;
    rows->setContentsMargins(Indent, 0, 0, 0);
    rows->setSpacing(FormParts::RowSpacing);
    section->addLayout(rows);
    m_column->addLayout(section);
    return rows;
}

QHBoxLayout *PreferencesPage::addRow(QVBoxLayout *section) {
    auto *row = new QHBoxLayout;
    row->setSpacing(FormParts::FieldSpacing);
    section->addLayout(row);
    return row;
}

QLabel *PreferencesPage::addExplanation(QVBoxLayout *section, const QString &text) {
    auto *label = named(new QLabel(text, this), "explanation_");
    label->setWordWrap(true);
    section->addWidget(label);
    return label;
}

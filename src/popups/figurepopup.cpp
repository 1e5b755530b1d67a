#include "popups/figurepopup.h"

#include "popups/colorselectpopup.h"
#include "popups/colorselecttabbutton.h"
#include "popups/itembutton.h"
#include "preferences/tindrapreferences.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <array>

namespace {

enum Tab { FillTab = 0, OutlineTab = 1 };

constexpr int ShapesPerRow = 5;

struct Entry {
    FigurePopup::Figure figure;
    const char *objectName; ///< by which the style sheet finds the picture
    const char *text;
};

constexpr std::array<Entry, 10> Entries{{
    {{ShapeTypes::Rectangle, Qt::SolidLine}, "rectangle_", QT_TRANSLATE_NOOP("FigurePopup", "rectangle")},
    {{ShapeTypes::Circle, Qt::SolidLine}, "circle_", QT_TRANSLATE_NOOP("FigurePopup", "circle")},
    {{ShapeTypes::SpeechBalloon, Qt::SolidLine}, "text_", QT_TRANSLATE_NOOP("FigurePopup", "speech balloon")},
    {{ShapeTypes::Line, Qt::SolidLine}, "line_", QT_TRANSLATE_NOOP("FigurePopup", "line")},
    {{ShapeTypes::Arrow, Qt::SolidLine}, "arrow_", QT_TRANSLATE_NOOP("FigurePopup", "arrow")},
    {{ShapeTypes::Rectangle, Qt::DotLine},
     "rectangle_dotted_",
     QT_TRANSLATE_NOOP("FigurePopup", "dotted rectangle")},
    {{ShapeTypes::Circle, Qt::DotLine}, "circle_dotted_", QT_TRANSLATE_NOOP("FigurePopup", "dotted circle")},
    {{ShapeTypes::SpeechBalloon, Qt::DotLine},
     "text_dotted_",
     QT_TRANSLATE_NOOP("FigurePopup", "dotted speech balloon")},
    {{ShapeTypes::Line, Qt::DotLine}, "line_dotted_", QT_TRANSLATE_NOOP("FigurePopup", "dotted line")},
    {{ShapeTypes::Arrow, Qt::DotLine}, "arrow_dotted_", QT_TRANSLATE_NOOP("FigurePopup", "dotted arrow")},
}};

/// The colour of a page, or the stored one where that is none of the swatches (any more).
QColor chosen(const ColorSelectPopup *page, TindraPreferences::Id stored) {
    const QColor color = page->color();
    const auto *preferences = TindraPreferences::instance();
    return color.isValid() || !preferences ? color : preferences->color(stored);
}

} // namespace

FigurePopup::FigurePopup(QWidget *parent)
    : Popup(parent), m_shapes(new QButtonGroup(this)), m_tabs(new QButtonGroup(this)),
      m_fillPage(new ColorSelectPopup(this)), m_outlinePage(new ColorSelectPopup(this)) {
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 14, 10, 14);
    layout->setSpacing(10);
    addShapeButtons(layout);
    addColorTabs(layout);
    loadSettings();

    // Connected last, so that what was stored is not reported as a choice.
    connect(m_shapes, QOverload<QAbstractButton *>::of(&QButtonGroup::buttonClicked), this,
            [this] { emitCloseSignal(Triggered); });
    for (ColorSelectPopup *page : {m_fillPage, m_outlinePage})
        connect(page, &ColorSelectPopup::colorSelected, this, [this] { emitCloseSignal(Triggered); });
    connect(this, &Popup::triggered, this, &FigurePopup::emitFigure);
}

FigurePopup::Figure FigurePopup::figureOf(int id) {
    const bool exists = id >= 0 && id < int(Entries.size());
    return Entries[exists ? size_t(id) : 0].figure;
}

int FigurePopup::idOf(int shapeType, int lineType) {
    const Qt::PenStyle line = lineType == Qt::SolidLine ? Qt::SolidLine : Qt::DotLine;
    for (size_t id = 0; id < Entries.size(); ++id) {
        if (Entries[id].figure.shapeType == shapeType && Entries[id].figure.lineType == line)
            return int(id);
    }
    return -1;
}

void FigurePopup::addShapeButtons(QVBoxLayout *layout) {
    auto *grid = new QGridLayout;
    grid->setSpacing(0);
    for (int id = 0; id < int(Entries.size()); ++id) {
        const Entry &entry = Entries[size_t(id)];
        auto *button = new ItemButton(this);
        button->setObjectName(QLatin1String(entry.objectName));
        button->setCheckable(true);
        button->setToolTip(tr(entry.text));
        button->setAccessibleName(tr(entry.text));
        m_shapes->addButton(button, id);
        grid->addWidget(button, id / ShapesPerRow, id % ShapesPerRow);
    }
    layout->addLayout(grid);
}

void FigurePopup::addColorTabs(QVBoxLayout *layout) {
    auto *row = new QHBoxLayout;
    row->setSpacing(0);
    m_fillTab = addTab(row, FillTab, QStringLiteral("fill_"), tr("fill"));
    m_outlineTab = addTab(row, OutlineTab, QStringLiteral("outline_"), tr("outline"));
    layout->addLayout(row);
    addPage(layout, m_fillPage, m_fillTab);
    addPage(layout, m_outlinePage, m_outlineTab);
    connect(m_tabs, QOverload<QAbstractButton *, bool>::of(&QButtonGroup::buttonToggled), this,
            &FigurePopup::onColorTabToggled);
    m_outlineTab->setChecked(true);
}

ColorSelectTabButton *FigurePopup::addTab(QHBoxLayout *row, int id, const QString &name,
                                          const QString &text) {
    auto *tab = new ColorSelectTabButton(this);
    tab->setObjectName(name);
    tab->setText(text);
    m_tabs->addButton(tab, id);
    row->addWidget(tab, 1);
    return tab;
}

void FigurePopup::addPage(QVBoxLayout *layout, ColorSelectPopup *page, ColorSelectTabButton *tab) {
    // Not a window of its own here.
    page->setWindowFlags(Qt::Widget);
    page->layout()->setContentsMargins(0, 0, 0, 0);
    page->hide();
    layout->addWidget(page);
    connect(page, &ColorSelectPopup::colorSelected, tab, &ColorSelectTabButton::setColor);
}

void FigurePopup::loadSettings() {
    m_fillPage->setBasicColors(BasicColors::figureFill());
    m_fillPage->setCustomColorKey(TindraPreferences::FigureFillCustomColorKey());
    m_outlinePage->setBasicColors(BasicColors::figureOutline());
    m_outlinePage->setCustomColorKey(TindraPreferences::FigureLineCustomColorKey());
    const auto *preferences = TindraPreferences::instance();
    if (!preferences)
        return;
    const QColor fill = preferences->color(TindraPreferences::FigureFillColor);
    const QColor outline = preferences->color(TindraPreferences::FigureLineColor);
    m_fillTab->setColor(fill);
    m_outlineTab->setColor(outline);
    m_fillPage->selectColor(fill);
    m_outlinePage->selectColor(outline);
    const int id = idOf(preferences->GetInt(TindraPreferences::FigureType, ShapeTypes::Rectangle),
                        preferences->GetInt(TindraPreferences::FigureLineType, Qt::SolidLine));
    m_shapes->button(qMax(0, id))->setChecked(true);
}

void FigurePopup::onColorTabToggled(QAbstractButton *btn, bool checked) {
    ColorSelectPopup *page = m_tabs->id(btn) == FillTab ? m_fillPage : m_outlinePage;
    page->setVisible(checked);
}

void FigurePopup::emitFigure() {
    const Figure figure = figureOf(m_shapes->checkedId());
    emit figureSelected(figure.shapeType, figure.lineType,
                        chosen(m_fillPage, TindraPreferences::FigureFillColor),
                        chosen(m_outlinePage, TindraPreferences::FigureLineColor));
}

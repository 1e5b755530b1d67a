#include "popups/basiccolors.h"
#include "popups/colorpicker.h"
#include "popups/colorselectpopup.h"
#include "popups/croppopup.h"
#include "popups/figurepopup.h"
#include "popups/linepopup.h"
#include "popups/mosaicpopup.h"
#include "popups/textpopup.h"
#include "popups/toolbutton.h"
#include "preferences/tindrapreferences.h"
#include "support/fakeplatform.h"
#include "ui/builtinstyle.h"
#include "ui/coachmarkwidget.h"
#include "ui/menu.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QScreen>
#include <QStyle>
#include <QTest>

#include <functional>
#include <memory>

using Maker = std::function<Popup *()>;
Q_DECLARE_METATYPE(Maker)

/// The panels under the real style sheet at several scales: the sizes that the sheet names are met and
/// nothing is cut off. With TINDRA_TEST_PICTURES set, pictures of them are left in that folder.
class Tst_PopupLook : public QObject {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void panelFitsItsMenu_data();
    void panelFitsItsMenu();
    void toolButton();
    void sizesOfTheSheet();
    void pictureComesByTheName_data();
    void pictureComesByTheName();
    void focusIsSeenAsWellAsTheChoice();
    void focusHasOneColourOnAllPanels();
    void samplesStandInOneRow();
    void hueBarStandsInTheMiddleOfItsRoom();

private:
    using Panel = std::unique_ptr<Popup>;
    static Panel makePanel(const QByteArray &name);
    static QImage look(QWidget *widget);
    static QColor frameOf(QWidget *widget);

    /// The scale that the screen of this run asks for.
    static double scale();
    static void picture(QWidget *widget, const QString &name);
};

void Tst_PopupLook::initTestCase() {
    FakePlatform::install();
    installBuiltInStyle(qApp);
}

void Tst_PopupLook::init() {
    TindraPreferences::resetForTesting();
    TindraPreferences::instance()->Init();
    TindraPreferences::instance()->SetCustomColors(TindraPreferences::PenCustomColorKey(),
                                                   {QColor(10, 200, 190), QColor(120, 60, 10)});
    TindraPreferences::instance()->SetCustomColors(TindraPreferences::FigureFillCustomColorKey(),
                                                   {QColor(10, 200, 190)});
}

double Tst_PopupLook::scale() {
    return QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 96.0;
}

void Tst_PopupLook::picture(QWidget *widget, const QString &name) {
    const QString folder = qEnvironmentVariable("TINDRA_TEST_PICTURES");
    if (!folder.isEmpty())
        widget->grab().save(QStringLiteral("%1/%2-%3.png").arg(folder, name).arg(scale()));
}

void Tst_PopupLook::panelFitsItsMenu_data() {
    QTest::addColumn<Maker>("make");
    QTest::addColumn<bool>("inMenu");
    const QVector<QPair<QByteArray, Maker>> makers{
        {"figure", [] { return new FigurePopup; }},
        {"line", [] { return new LinePopup; }},
        {"mosaic", [] { return new MosaicPopup; }},
        {"picker", [] { return new ColorPicker; }},
        {"color",
         [] {
             auto *popup = new ColorSelectPopup;
             popup->setBasicColors(BasicColors::text());
             popup->setCustomColorKey(TindraPreferences::PenCustomColorKey());
             popup->selectColor(Qt::red);
             return popup;
         }},
        {"text", [] { return new TextPopup; }},
        {"crop",
         [] {
             auto *popup = new CropPopup;
             popup->setMaximumCropSize({1920, 1080});
             popup->setCropSize({1280, 720});
             return popup;
         }},
    };
    for (const auto &maker : makers) {
        const bool floats = maker.first == "text" || maker.first == "crop";
        QTest::newRow(maker.first) << maker.second << !floats;
    }
}

void Tst_PopupLook::panelFitsItsMenu() {
    QFETCH(Maker, make);
    QFETCH(bool, inMenu);
    Popup *popup = make();
    QWidget holder;
    QScopedPointer<QWidget> floating(inMenu ? nullptr : popup);
    QWidget *window = popup;
    if (inMenu)
        window = popup->toMenu(&holder);
    if (inMenu)
        static_cast<QMenu *>(window)->popup(QPoint(10, 10));
    else
        window->show();
    QTest::qWait(20);
    QVERIFY(window->isVisible());
    picture(window, QString::fromLatin1(QTest::currentDataTag()));
    QVERIFY(popup->width() >= popup->sizeHint().width() && popup->height() >= popup->sizeHint().height());
    QVERIFY(window->rect().contains(popup->geometry().translated(inMenu ? QPoint() : -popup->pos())));
    const auto children = popup->findChildren<QWidget *>();
    for (QWidget *child : children) {
        if (child->window() != window || !child->isVisible())
            continue;
        const QRect place(child->mapTo(popup, QPoint()), child->size());
        QVERIFY2(popup->rect().contains(place), qPrintable(child->objectName()));
        QVERIFY2(child->width() >= child->minimumSizeHint().width() || !child->inherits("QLabel"),
                 qPrintable(child->objectName()));
    }
}

void Tst_PopupLook::toolButton() {
    QWidget window;
    QHBoxLayout layout(&window);
    layout.setSpacing(4);
    QMenu menu;
    const QStringList names{
        QStringLiteral("save"),   QStringLiteral("undo"),        QStringLiteral("aitools"),
        QStringLiteral("figure"), QStringLiteral("highlighter"), QStringLiteral("line"),
        QStringLiteral("text"),   QStringLiteral("crop"),        QStringLiteral("mosaic"),
        QStringLiteral("help"),   QStringLiteral("menu")};
    QList<ToolButton *> buttons;
    for (const QString &name : names) {
        auto *button = new ToolButton(&window);
        button->setObjectName(name);
        button->setText(name);
        button->setCheckable(true);
        layout.addWidget(button);
        buttons.append(button);
    }
    buttons[1]->setEnabled(false);
    for (const int split : {3, 4, 8}) {
        buttons[split]->setShowMenuButton(true);
        buttons[split]->setMenu(&menu);
    }
    buttons[5]->setMenu(&menu);
    buttons[4]->setChecked(true);
    window.show();
    auto coachmark = new CoachmarkWidget(TindraPreferences::OnceAiToolsCoachmark, &window);
    coachmark->setText(QStringLiteral("Enhance images beautifully with AI features!"));
    coachmark->setAnchor(buttons[2], CoachmarkWidget::BelowAnchor, 20);
    window.resize(window.sizeHint() + QSize(0, int(60 * scale())));
    layout.setAlignment(Qt::AlignTop);
    coachmark->show();
    coachmark->raise();
    QTest::qWait(20);
    picture(&window, QStringLiteral("toolbuttons"));
    for (ToolButton *button : qAsConst(buttons)) {
        const auto *image = button->findChild<QWidget *>(QStringLiteral("image_"));
        QCOMPARE(image->width(), int(28 * scale()));
        QVERIFY(button->rect().contains(image->geometry()));
    }
}

void Tst_PopupLook::sizesOfTheSheet() {
    ColorPicker picker;
    picker.show();
    QTest::qWait(10);
    QCOMPARE(picker.findChild<QWidget *>(QStringLiteral("colorSquare_"))->size(),
             QSize(int(132 * scale()), int(100 * scale())));
    QCOMPARE(picker.findChild<QWidget *>(QStringLiteral("colorSlider_"))->size(),
             QSize(int(16 * scale()), int(100 * scale())));
}

Tst_PopupLook::Panel Tst_PopupLook::makePanel(const QByteArray &name) {
    if (name == "figure")
        return std::make_unique<FigurePopup>();
    if (name == "text")
        return std::make_unique<TextPopup>();
    return std::make_unique<MosaicPopup>();
}

QImage Tst_PopupLook::look(QWidget *widget) {
    QWidget *window = widget->window();
    return window->grab(QRect(widget->mapTo(window, QPoint()), widget->size())).toImage();
}

void Tst_PopupLook::pictureComesByTheName_data() {
    QTest::addColumn<QByteArray>("panel");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("checked");
    const auto row = [](const char *panel, const char *name, bool checked = false) {
        QTest::addRow("%s%s%s", panel, name, checked ? "checked" : "")
            << QByteArray(panel) << QString::fromLatin1(name) << checked;
    };
    for (const char *name : {"rectangle_", "circle_", "text_", "line_", "arrow_", "rectangle_dotted_",
                             "circle_dotted_", "text_dotted_", "line_dotted_", "arrow_dotted_"})
        row("figure", name);
    for (const char *name : {"bold_", "italic_", "underline_"}) {
        row("text", name);
        row("text", name, true);
    }
    for (const char *name : {"original_", "weak_", "medium_", "strong_"})
        row("mosaic", name);
}

// A rule and a widget that no longer have the same name leave the button without a word.
void Tst_PopupLook::pictureComesByTheName() {
    QFETCH(QByteArray, panel);
    QFETCH(QString, name);
    QFETCH(bool, checked);
    const Panel popup = makePanel(panel);
    popup->show();
    QTest::qWait(10);
    auto *widget = popup->findChild<QWidget *>(name);
    QVERIFY(widget);
    if (auto *button = qobject_cast<QAbstractButton *>(widget))
        button->setChecked(checked);
    const QImage own = look(widget);
    const auto rename = [&](const QString &newName) {
        widget->setObjectName(newName);
        // The picture of a sample is that of a label inside.
        QList<QWidget *> all = widget->findChildren<QWidget *>();
        all.append(widget);
        for (QWidget *part : qAsConst(all)) {
            part->style()->unpolish(part);
            part->style()->polish(part);
        }
        QTest::qWait(10);
    };
    rename(QStringLiteral("nameless"));
    QVERIFY(look(widget) != own);
    rename(name);
    QCOMPARE(look(widget), own);
    if (checked) {
        // Not the plain picture on the ground of a chosen button either.
        widget->setStyleSheet(QStringLiteral("image: url(:/res/popup/text/%1.svg)").arg(name.chopped(1)));
        QTest::qWait(10);
        QVERIFY(look(widget) != own);
    }
}

/// In the middle of the upper edge, or of the lower one where there is none above.
QColor Tst_PopupLook::frameOf(QWidget *widget) {
    const QImage image = look(widget);
    const QColor top = image.pixelColor(image.width() / 2, 0);
    return widget->inherits("ColorSelectTabButton") ? image.pixelColor(image.width() - 2, image.height() - 1)
                                                    : top;
}

void Tst_PopupLook::focusIsSeenAsWellAsTheChoice() {
    const QColor chosen(0, 127, 245);
    const QColor focused(34, 34, 34);
    TindraPreferences::instance()->SetInt(TindraPreferences::FigureLineColor,
                                          TindraPreferences::colorToInt(Qt::black));
    QWidget holder;
    auto *popup = new FigurePopup;
    Menu *menu = popup->toMenu(&holder);
    menu->popup(QPoint(10, 10));
    QTest::qWait(20);
    QList<QWidget *> swatches; // black first
    for (auto *swatch : popup->findChildren<QAbstractButton *>()) {
        if (swatch->inherits("ColorSelectButton") && swatch->isVisible())
            swatches.append(swatch);
    }
    QCOMPARE(swatches.size(), 10);
    const QList<QWidget *> tabs{popup->findChild<QWidget *>(QStringLiteral("outline_")),
                                popup->findChild<QWidget *>(QStringLiteral("fill_"))};
    for (const QList<QWidget *> &pair : {swatches.mid(0, 2), tabs}) {
        pair[1]->setFocus();
        QCOMPARE(frameOf(pair[0]), chosen);
        QCOMPARE(frameOf(pair[1]), focused);
        const QImage other = look(pair[1]);
        pair[0]->setFocus();
        QCOMPARE(frameOf(pair[0]), focused);
        QVERIFY(frameOf(pair[1]) != focused && frameOf(pair[1]) != chosen);
        QVERIFY(look(pair[1]) != other);
    }
    // With the frame alike, the ground tells the chosen one.
    const QPoint inside(int(3 * scale()), int(3 * scale()));
    QCOMPARE(look(swatches[0]).pixelColor(inside), QColor(230, 243, 254));
    swatches[1]->setFocus();
    QCOMPARE(look(swatches[1]).pixelColor(inside), QColor(Qt::white));
}

// A blue frame would say that the button is the chosen one, as it does on a colour or a mosaic.
void Tst_PopupLook::focusHasOneColourOnAllPanels() {
    const QColor focused(34, 34, 34);
    for (const char *panel : {"figure", "line", "mosaic"}) {
        const Panel popup = makePanel(panel);
        popup->show();
        QTest::qWait(10);
        const auto buttons = popup->findChildren<QAbstractButton *>();
        for (QAbstractButton *button : buttons) {
            if (!button->isVisible() || !button->isCheckable())
                continue;
            button->setFocus();
            QVERIFY2(frameOf(button) == focused, qPrintable(button->objectName()));
        }
    }
}

void Tst_PopupLook::samplesStandInOneRow() {
    const Panel popup = makePanel("mosaic");
    popup->show();
    QTest::qWait(10);
    const auto topOf = [&](const char *sample, const char *part) {
        const auto *holder = popup->findChild<QWidget *>(QLatin1String(sample));
        const auto *label = holder->findChild<QWidget *>(QLatin1String(part));
        return label->mapTo(popup.get(), QPoint()).y();
    };
    for (const char *part : {"image_", "caption_"}) {
        for (const char *sample : {"weak_", "medium_", "strong_"})
            QCOMPARE(topOf("original_", part), topOf(sample, part));
    }
}

void Tst_PopupLook::hueBarStandsInTheMiddleOfItsRoom() {
    ColorPicker picker;
    picker.show();
    QTest::qWait(10);
    const QRect square = picker.findChild<QWidget *>(QStringLiteral("colorSquare_"))->geometry();
    const QRect bar = picker.findChild<QWidget *>(QStringLiteral("colorSlider_"))->geometry();
    const int end = picker.findChild<QWidget *>(QStringLiteral("cancelBtn_"))->geometry().right();
    const int before = bar.left() - square.right() - 1;
    const int behind = end - bar.right();
    QVERIFY2(qAbs(before - behind) <= 1, qPrintable(QStringLiteral("%1, %2").arg(before).arg(behind)));
    QVERIFY(before <= int(20 * scale()));
}

QTEST_MAIN(Tst_PopupLook)
#include "tst_popuplook.moc"

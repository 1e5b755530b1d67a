#include "app/managementprogramoffer.h"
#include "app/plugintest.h"
#include "app/unopenedfiles.h"
#include "output/confirmdeletedialog.h"
#include "output/confirmsavedialog.h"
#include "output/filenameformatsettingdialog.h"
#include "output/filenameutil.h"
#include "output/postsavedialog.h"
#include "popups/popup.h"
#include "preferences/dialog/preferencesdialog.h"
#include "preferences/dialog/sizeinputdialog.h"
#include "print/nativeprinter.h"
#include "print/printerpropertiesdialog.h"
#include "print/printpreviewdialog.h"
#include "services/workfolder.h"
#include "ui/aboutdialog.h"
#include "ui/builtinstyle.h"
#include "ui/debugdialog.h"
#include "ui/filedialog.h"
#include "ui/filedownloaddialog.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QImageReader>
#include <QLabel>
#include <QLibraryInfo>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QTableWidget>
#include <QTcpServer>
#include <QTranslator>
#include <QtMath>

/// Every window, panel, menu and dialog of the program, in Korean and under the real style sheet at the scale
/// of this run: no text is cut off, every control has a name for those who do not see it, every control is
/// reached by the keyboard and shows that it has the focus. With TINDRA_TEST_PICTURES set, pictures are left
/// in that folder.
class Tst_Surfaces : public PluginTest {
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup() { PluginTest::cleanup(); }

    void textsFitAreKoreanAndNameEveryControl_data() { addSurfaces(); }
    void textsFitAreKoreanAndNameEveryControl();
    void keyboardReachesControlsAndShowsIt_data() { addSurfaces(); }
    void keyboardReachesControlsAndShowsIt();

private:
    using Visit = std::function<void(QWidget *window)>;
    struct Surface {
        const char *name;
        void (Tst_Surfaces::*show)(const Visit &visit);
        const char *part; ///< of a surface that comes in several
        /// That leads the keyboard there from the window, which has it until then; 0: the surface takes it.
        int entering = 0;
    };
    static const QVector<Surface> &surfaces();
    static void addSurfaces();
    /// Presses a key where the keyboard is now.
    static void type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QGuiApplication::focusWindow(), Qt::Key(key), modifiers);
    }
    /// Leads the keyboard into the surface of the present row.
    void enter(QWidget *window);
    // What is wrong in a window, each a list of widgets or texts.
    static QStringList cutOff(QWidget *window);
    static QStringList untranslated(QWidget *window);
    static QStringList withoutName(QWidget *window);
    /// Shows the surface of the present row, lets it be visited and closes it.
    void present(const Visit &visit);

    void showWindow(const Visit &visit);
    void showSmallestWindow(const Visit &visit);
    void showSelectMode(const Visit &visit);
    void showWithoutHistory(const Visit &visit);
    void showEmptyWindow(const Visit &visit);
    void showCoachmark(const Visit &visit);
    void showSmallestWindowWithAiTools(const Visit &visit);
    void showAiToolsMenu(const Visit &visit);
    void showCanvasMenuWithAiTools(const Visit &visit);
    void showAiToolsResult(const Visit &visit);
    void showOffer(const Visit &visit);
    void showMenuOfButton(const Visit &visit);
    void showColorPicker(const Visit &visit);
    void showOverflow(const Visit &visit);
    void showOpenText(const Visit &visit);
    void showOpenCrop(const Visit &visit);
    void showPreferences(const Visit &visit);
    void showCanvasMenu(const Visit &visit);
    void showRowMenu(const Visit &visit);
    void showDialog(const Visit &visit);
    void showPrint(const Visit &visit);
    void showExitQuestion(const Visit &visit);
    void showFailedCapture(const Visit &visit);
    void showRestoredCaptures(const Visit &visit);
    void showDownload(const Visit &visit);
    void showFileDialog(const Visit &visit);
    /// Visits the modal dialog that comes up next, and closes it.
    static void addVisit(ModalAnswers &answers, const Visit &visit);

    void fillWindow();
    /// A window with AI tools in the place of the one without.
    void startWithAiTools();
    void openMenu(QMenu *menu, const Visit &visit);
    void openDialog(QDialog &dialog, const Visit &visit);
    std::unique_ptr<QDialog> makeDialog(const QByteArray &name);
    /// That part of the sample, a picture with something on it; made once for all surfaces.
    static QString sampleFile(const QRect &part);
    /// A capture of that part.
    void addSample(const QString &name, const QRect &part);
    /// Two captures to print; around a part of the newest goes the pen.
    void addSamplesToPrint();
    void circle(const QPointF &centre, double across, double down);
    std::unique_ptr<PrintPreviewDialog> makePrintDialog();

    const char *m_part = nullptr;
    QTranslator m_translator;
    QTranslator m_toolkit;
};

namespace {

// Of the sample.
const QRect WholeScreen(0, 0, 1280, 800);
const QRect Table(350, 500, 800, 210);
const QRect Chart(350, 140, 800, 370);
const QPoint HighestColumn(1023, 372);

const QList<QColor> ownColors{QColor(10, 200, 190), QColor(120, 60, 10)};

QWidget *swatchNamed(QWidget *panel, const QString &name) {
    const auto buttons = panel->findChildren<QAbstractButton *>();
    const auto found = std::find_if(buttons.begin(), buttons.end(),
                                    [&](const auto *button) { return button->accessibleName() == name; });
    return found == buttons.end() ? nullptr : *found;
}

double scale() {
    return QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 96.0;
}

int scaled(int size) {
    return static_cast<int>(size * scale());
}

void settle() {
    QTest::qWait(20);
}

QString nameOf(const QWidget *widget) {
    return QStringLiteral("%1#%2 \"%3\"")
        .arg(QLatin1String(widget->metaObject()->className()), widget->objectName(),
             widget->property("text").toString());
}

/// The visible widgets of that window, without those that a toolkit's widget is made of.
QList<QWidget *> partsOf(QWidget *window) {
    QList<QWidget *> parts;
    const auto all = window->findChildren<QWidget *>();
    for (QWidget *widget : all) {
        const bool isInner = widget->objectName().startsWith("qt_"_qs) ||
                             qobject_cast<QScrollBar *>(widget) ||
                             qobject_cast<QAbstractSpinBox *>(widget->parentWidget()) ||
                             qobject_cast<QComboBox *>(widget->parentWidget());
        if (widget->window() == window && widget->isVisible() && !isInner &&
            !widget->visibleRegion().isEmpty())
            parts.append(widget);
    }
    return parts;
}

bool isControl(const QWidget *widget) {
    return qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QComboBox *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QAbstractSlider *>(widget) ||
           (qobject_cast<const QAbstractItemView *>(widget) && !qobject_cast<const QHeaderView *>(widget)) ||
           widget->inherits("ColorSquare") || widget->inherits("ClickableLabel");
}

/// The room that a text of that widget needs, and the room it has.
bool textFits(const QWidget *widget) {
    const QFontMetrics metrics = widget->fontMetrics();
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        if (label->text().isEmpty() || label->pixmap(Qt::ReturnByValue).isNull() == false)
            return true;
        const QSize needed =
            label->wordWrap() ? QSize(0, label->heightForWidth(label->width())) : label->sizeHint();
        return label->width() >= needed.width() && label->height() >= needed.height();
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(widget)) {
        if (button->text().isEmpty())
            return true;
        if (button->inherits("QCheckBox") || button->inherits("QRadioButton"))
            return button->width() >= button->sizeHint().width() &&
                   button->height() >= button->sizeHint().height();
        const QSize text = metrics.size(Qt::TextShowMnemonic, button->text());
        return text.width() <= button->width() - 2 && text.height() <= button->height();
    }
    if (widget->objectName() == "lookInCombo"_qs)
        return true; // leaves the middle of a path out by itself
    if (const auto *box = qobject_cast<const QComboBox *>(widget))
        return metrics.horizontalAdvance(box->currentText()) <= box->width() - scaled(9 + 20) &&
               metrics.height() <= box->height();
    if (const auto *box = qobject_cast<const QAbstractSpinBox *>(widget))
        return metrics.horizontalAdvance(box->text()) <= box->width() - scaled(6 + 16) &&
               metrics.height() <= box->height();
    if (const auto *line = qobject_cast<const QLineEdit *>(widget))
        return metrics.height() <= line->height();
    if (const auto *group = qobject_cast<const QGroupBox *>(widget))
        return metrics.horizontalAdvance(group->title()) <= group->width();
    return true;
}

/// The panel of that class that floats over the canvas.
QWidget *visiblePopup(const char *name) {
    const auto windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows) {
        if (window->isVisible() && window->inherits(name))
            return window;
    }
    return nullptr;
}

QStringList textsOf(QWidget *window) {
    QStringList texts{window->windowTitle()};
    const auto addActions = [&texts](QWidget *widget) {
        for (QAction *action : widget->actions()) {
            if (action->isVisible())
                texts << action->text();
        }
    };
    if (qobject_cast<QMenu *>(window))
        addActions(window);
    for (QWidget *widget : partsOf(window)) {
        texts << widget->toolTip() << widget->accessibleName();
        if (const auto *label = qobject_cast<QLabel *>(widget))
            texts << label->text();
        if (const auto *button = qobject_cast<QAbstractButton *>(widget))
            texts << button->text();
        if (const auto *group = qobject_cast<QGroupBox *>(widget))
            texts << group->title();
        if (const auto *box = qobject_cast<QComboBox *>(widget)) {
            for (int i = 0; i < box->count(); ++i)
                texts << box->itemText(i);
        }
    }
    texts.removeAll(QString());
    texts.removeDuplicates();
    return texts;
}

/// Whether a widget that has the focus looks different from how it looks without.
bool showsFocus(QWidget *widget) {
    QWidget *window = widget->window();
    const QRect place(widget->mapTo(window, QPoint()), widget->size());
    const QImage with = window->grab(place).toImage();
    widget->clearFocus();
    const QImage without = window->grab(place).toImage();
    widget->setFocus(Qt::TabFocusReason);
    return with != without;
}

QString accessibleNameOf(QWidget *widget) {
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(widget);
    return face ? face->text(QAccessible::Name) : QString();
}

} // namespace

const QVector<Tst_Surfaces::Surface> &Tst_Surfaces::surfaces() {
    using Test = Tst_Surfaces;
    static const QVector<Surface> all{
        {"window", &Test::showWindow, nullptr},
        {"window-smallest", &Test::showSmallestWindow, nullptr},
        {"window-smallest-aitools", &Test::showSmallestWindowWithAiTools, nullptr},
        {"window-select", &Test::showSelectMode, nullptr},
        {"window-without-history", &Test::showWithoutHistory, nullptr},
        {"window-empty", &Test::showEmptyWindow, nullptr},
        {"coachmark", &Test::showCoachmark, nullptr},
        {"panel-figure", &Test::showMenuOfButton, "figure"},
        {"panel-pen", &Test::showMenuOfButton, "pen"},
        {"panel-highlighter", &Test::showMenuOfButton, "highlighter"},
        {"panel-line", &Test::showMenuOfButton, "line"},
        {"panel-mosaic", &Test::showMenuOfButton, "mosaic"},
        {"panel-picker", &Test::showColorPicker, nullptr},
        {"menu-help", &Test::showMenuOfButton, "help"},
        {"menu-menu", &Test::showMenuOfButton, "menu"},
        {"menu-overflow", &Test::showOverflow, nullptr},
        {"menu-canvas", &Test::showCanvasMenu, nullptr},
        {"menu-canvas-aitools", &Test::showCanvasMenuWithAiTools, nullptr},
        {"menu-aitools", &Test::showAiToolsMenu, nullptr},
        {"menu-row", &Test::showRowMenu, nullptr},
        {"panel-text", &Test::showOpenText, nullptr, Qt::Key_F6},
        {"panel-crop", &Test::showOpenCrop, nullptr},
        {"preferences-general", &Test::showPreferences, "0"},
        {"preferences-image", &Test::showPreferences, "1"},
        {"preferences-shortcut", &Test::showPreferences, "2"},
        {"preferences-history", &Test::showPreferences, "3"},
        {"dialog-size", &Test::showDialog, "size"},
        {"dialog-about", &Test::showDialog, "about"},
        {"dialog-delete", &Test::showDialog, "delete"},
        {"dialog-delete-selected", &Test::showDialog, "delete-selected"},
        {"dialog-delete-all", &Test::showDialog, "delete-all"},
        {"dialog-save-all", &Test::showDialog, "save-all"},
        {"dialog-save-selected", &Test::showDialog, "save-selected"},
        {"dialog-names", &Test::showDialog, "names"},
        {"dialog-saved", &Test::showDialog, "saved"},
        {"dialog-saved-batch", &Test::showDialog, "saved-batch"},
        {"dialog-buttons", &Test::showDialog, "buttons"},
        {"print-preview", &Test::showPrint, "preview"},
        {"print-margins", &Test::showPrint, "margins"},
        {"print-none", &Test::showPrint, "none"},
        {"print-settings", &Test::showPrint, "settings"},
        {"dialog-debug", &Test::showDialog, "debug"},
        {"dialog-exit", &Test::showExitQuestion, nullptr},
        {"dialog-failed", &Test::showFailedCapture, nullptr},
        {"dialog-unopened", &Test::showDialog, "unopened"},
        {"dialog-restored", &Test::showRestoredCaptures, nullptr},
        {"dialog-download", &Test::showDownload, nullptr},
        {"files-save", &Test::showFileDialog, "save"},
        {"files-overwrite", &Test::showFileDialog, "overwrite"},
        {"files-folder", &Test::showFileDialog, "folder"},
        {"dialog-aitools-updating", &Test::showAiToolsResult, "1306"},
        {"dialog-aitools-missing", &Test::showAiToolsResult, "126"},
        {"dialog-aitools-failed", &Test::showAiToolsResult, "1"},
        {"dialog-management", &Test::showOffer, nullptr},
    };
    return all;
}

void Tst_Surfaces::addSurfaces() {
    QTest::addColumn<int>("surface");
    for (int i = 0; i < surfaces().size(); ++i)
        QTest::newRow(surfaces().at(i).name) << i;
}

void Tst_Surfaces::present(const Visit &visit) {
    QFETCH(int, surface);
    m_part = surfaces().at(surface).part;
    int visits = 0;
    (this->*surfaces().at(surface).show)([&](QWidget *window) {
        QVERIFY(window && window->isVisible());
        ++visits;
        visit(window);
    });
    QCOMPARE(visits, 1);
}

void Tst_Surfaces::initTestCase() {
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    QVERIFY(m_translator.load(":/TindraEditor_ko.qm"_qs));
    QVERIFY(m_toolkit.load("qtbase_ko"_qs, folder));
    QVERIFY(QCoreApplication::installTranslator(&m_translator));
    QVERIFY(QCoreApplication::installTranslator(&m_toolkit));
    QCoreApplication::setApplicationVersion(QStringLiteral(PROJECT_VERSION));
    installBuiltInStyle(qApp);
}

void Tst_Surfaces::init() {
    WindowTest::init();
    preferences()->SetCustomColors(TindraPreferences::PenCustomColorKey(), ownColors);
    // The panels read the colours once, when they are made.
    m_window.reset();
    start();
    fillWindow();
}

void Tst_Surfaces::fillWindow() {
    for (const int path : {int(TindraPreferences::FilePath), int(TindraPreferences::AutoSavePath)})
        preferences()->SetString(path, "/var/lib/pictures"_qs);
    addSample("a"_qs, WholeScreen);
    addSample("b"_qs, Table);
    addSample("c"_qs, Chart);
    m_window->resize(scaled(1300), scaled(560));
    settle();
}

void Tst_Surfaces::showWindow(const Visit &visit) {
    circle(HighestColumn - Chart.topLeft(), 50, 130);
    visit(m_window.get());
}

void Tst_Surfaces::showSmallestWindow(const Visit &visit) {
    m_window->resize(0, 0);
    settle();
    visit(m_window.get());
}

void Tst_Surfaces::showSelectMode(const Visit &visit) {
    m_window->findChild<QPushButton *>("historySelectMode_"_qs)->click();
    list()->findChild<QPushButton *>("selectButton_"_qs)->click();
    settle();
    visit(m_window.get());
}

void Tst_Surfaces::showWithoutHistory(const Visit &visit) {
    m_window->onClickHistoryHide();
    settle();
    visit(m_window.get());
}

void Tst_Surfaces::showEmptyWindow(const Visit &visit) {
    m_window.reset();
    QVERIFY(QDir(workFolder()).removeRecursively());
    start();
    m_window->show();
    m_window->resize(scaled(1300), scaled(560));
    settle();
    QVERIFY(!scene() && list()->count() == 0);
    visit(m_window.get());
}

void Tst_Surfaces::showCoachmark(const Visit &visit) {
    startWithAiTools();
    visit(m_window.get());
}

void Tst_Surfaces::startWithAiTools() {
    prepareHost("erase|배경 지우기|\nsharp|선명하게|\nenlarge|고해상도로 확대|");
    m_window.reset();
    // Nothing comes back from the other window.
    QDir(workFolder()).removeRecursively();
    start();
    fillWindow();
    QVERIFY(button("aitools") && button("aitools")->isVisible());
}

// Some tools have no entry in the overflow menu: the button must not push them out.
void Tst_Surfaces::showSmallestWindowWithAiTools(const Visit &visit) {
    startWithAiTools();
    m_window->resize(0, 0);
    settle();
    for (const char *name : {"aitools", "figure", "pen", "highlighter", "line", "menu"})
        QVERIFY2(button(name)->isVisible(), name);
    visit(m_window.get());
}

void Tst_Surfaces::showAiToolsMenu(const Visit &visit) {
    startWithAiTools();
    openMenu(button("aitools")->menu(), visit);
}

void Tst_Surfaces::showCanvasMenuWithAiTools(const Visit &visit) {
    startWithAiTools();
    showCanvasMenu(visit);
}

void Tst_Surfaces::showAiToolsResult(const Visit &visit) {
    startWithAiTools();
    qputenv("TINDRA_TEST_RESULT", m_part);
    ModalAnswers answers;
    addVisit(answers, visit);
    m_window->onAiToolsAction("erase"_qs);
    QVERIFY(answers.isDone());
}

void Tst_Surfaces::showOffer(const Visit &visit) {
    prepare();
    m_settings->remove("BrindleManager"_qs);
    m_settings->set("BrindleNotes"_qs, "Version"_qs, "3.0"_qs);
    ModalAnswers answers;
    addVisit(answers, visit);
    ManagementProgramOffer::makeIfMissed(m_window.get());
    QVERIFY(answers.isDone());
}

void Tst_Surfaces::openMenu(QMenu *menu, const Visit &visit) {
    QVERIFY(menu);
    menu->popup(m_window->mapToGlobal(QPoint(50, 100)));
    settle();
    visit(menu);
    menu->close();
    settle();
}

void Tst_Surfaces::showMenuOfButton(const Visit &visit) {
    openMenu(button(m_part)->menu(), [&](QWidget *panel) {
        if (qstrcmp(m_part, "pen") == 0) {
            for (const QColor &color : ownColors) {
                const QWidget *swatch = swatchNamed(panel, color.name().toUpper());
                QVERIFY(swatch && swatch->isVisible());
            }
        }
        visit(panel);
    });
}

void Tst_Surfaces::showColorPicker(const Visit &visit) {
    openMenu(button("pen")->menu(), [&](QWidget *panel) {
        QMenu *picker = nullptr;
        for (const auto *opener : panel->findChildren<QPushButton *>())
            picker = opener->menu() ? opener->menu() : picker;
        openMenu(picker, visit);
    });
}

void Tst_Surfaces::showOverflow(const Visit &visit) {
    m_window->resize(0, 0);
    settle();
    openMenu(button("menu")->menu(), visit);
}

void Tst_Surfaces::showOpenText(const Visit &visit) {
    m_window->onClickText();
    view()->setFocus(Qt::MouseFocusReason);
    sendMouse(QEvent::MouseButtonPress, {60, 100});
    sendMouse(QEvent::MouseButtonRelease, {60, 100});
    settle();
    visit(visiblePopup("TextPopup"));
    scene()->finishCurrentItem(false);
}

void Tst_Surfaces::showOpenCrop(const Visit &visit) {
    m_window->onClickCrop();
    settle();
    visit(visiblePopup("CropPopup"));
    scene()->finishCurrentItem(false);
}

// With everything of the second page in use.
void Tst_Surfaces::showPreferences(const Visit &visit) {
    preferences()->SetInt(TindraPreferences::FileFormat, 1);
    preferences()->SetBool(TindraPreferences::AutoSave, true);
    preferences()->SetSizePresets({{3840, 2160}, {1920, 1080}, {1280, 720}, {800, 600}, {640, 480}});
    PreferencesDialog dialog(m_window.get());
    dialog.loadAll();
    dialog.findChild<QTableWidget *>("fixedPresets_"_qs)->setCurrentCell(1, 0);
    dialog.selectPage(QByteArray(m_part).toInt());
    openDialog(dialog, visit);
}

void Tst_Surfaces::showCanvasMenu(const Visit &visit) {
    openMenu(view()->findChild<QMenu *>("contextMenu_"_qs), visit);
}

void Tst_Surfaces::showRowMenu(const Visit &visit) {
    QWidget *row = list()->itemWidget(list()->item(0));
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), row->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(row, &event);
    settle();
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    visit(menu);
    menu->close();
}

void Tst_Surfaces::openDialog(QDialog &dialog, const Visit &visit) {
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    settle();
    visit(&dialog);
    dialog.close();
}

std::unique_ptr<QDialog> Tst_Surfaces::makeDialog(const QByteArray &name) {
    QWidget *parent = m_window.get();
    if (name == "size") {
        static const QList<QSize> presets;
        auto dialog = std::make_unique<SizeInputDialog>(SizeInputDialog::Add, &presets, parent);
        dialog->setSize({640, 480});
        return dialog;
    }
    if (name == "debug")
        return std::make_unique<DebugDialog>(parent);
    if (name == "about")
        return std::make_unique<AboutDialog>(parent);
    if (name == "delete")
        return std::make_unique<ConfirmDeleteDialog>(ConfirmDeleteDialog::OneImage, parent);
    if (name == "delete-selected")
        return std::make_unique<ConfirmDeleteDialog>(ConfirmDeleteDialog::SelectedImages, parent);
    if (name == "delete-all")
        return std::make_unique<ConfirmDeleteDialog>(ConfirmDeleteDialog::AllImages, parent);
    if (name == "save-all")
        return std::make_unique<ConfirmSaveDialog>(ConfirmSaveDialog::AllImages, parent);
    if (name == "save-selected")
        return std::make_unique<ConfirmSaveDialog>(ConfirmSaveDialog::SelectedImages, parent);
    if (name == "names")
        return std::make_unique<FileNameFormatSettingDialog>(3, "BIRDNAME"_qs, parent);
    if (name == "saved" || name == "saved-batch") {
        auto dialog = std::make_unique<PostSaveDialog>(
            name == "saved" ? PostSaveDialog::OneImage : PostSaveDialog::Batch, parent);
        dialog->setSavedPath("/var/lib/pictures/2024-01-02 03;04;05.png"_qs);
        if (name == "saved-batch")
            dialog->setCount(12);
        return dialog;
    }
    if (name == "unopened")
        return UnopenedFiles::message({"회의 내용.txt"_qs, "받은 그림 2.png"_qs});
    auto dialog = std::make_unique<MessageDialog>(parent);
    dialog->setIcon(MessageDialog::Question);
    dialog->setText(MessageDialog::tr("Tindra"));
    dialog->setStandardButtons(MessageDialog::Yes | MessageDialog::No | MessageDialog::Cancel |
                                   MessageDialog::Retry,
                               MessageDialog::Yes);
    return dialog;
}

void Tst_Surfaces::showDialog(const Visit &visit) {
    const std::unique_ptr<QDialog> dialog = makeDialog(m_part);
    openDialog(*dialog, visit);
}

QString Tst_Surfaces::sampleFile(const QRect &part) {
    const QString file = QDir::temp().filePath("sample-%1x%2.png"_qs.arg(part.width()).arg(part.height()));
    if (QFile::exists(file))
        return file;
    if (part == WholeScreen)
        QProcess::execute(QStringLiteral(DRAW_SAMPLE), {file});
    else
        QImage(sampleFile(WholeScreen)).copy(part).save(file);
    return file;
}

void Tst_Surfaces::addSample(const QString &name, const QRect &part) {
    const QString path = workFolder() + QLatin1Char('/') + name + QStringLiteral(".png");
    QVERIFY(QFile::copy(sampleFile(part), path));
    QCOMPARE(QImageReader(path).size(), part.size());
    treat("/path \"%1\" /point 10 10"_qs.arg(path));
}

void Tst_Surfaces::addSamplesToPrint() {
    addSample("table"_qs, Table);
    addSample("screen"_qs, WholeScreen);
    circle(HighestColumn, 50, 130);
}

void Tst_Surfaces::circle(const QPointF &centre, double across, double down) {
    m_window->onPenSelected(QColor(226, 61, 61));
    const auto at = [&](int degrees) {
        const double angle = qDegreesToRadians(double(degrees));
        return centre + QPointF(across * qCos(angle), down * qSin(angle));
    };
    sendMouse(QEvent::MouseButtonPress, at(0));
    for (int degrees = 5; degrees <= 365; degrees += 5)
        sendMouse(QEvent::MouseMove, at(degrees));
    sendMouse(QEvent::MouseButtonRelease, at(365));
    settle();
}

std::unique_ptr<PrintPreviewDialog> Tst_Surfaces::makePrintDialog() {
    addSamplesToPrint();
    auto dialog = std::make_unique<PrintPreviewDialog>(m_window.get());
    for (const int row : {0, 1})
        dialog->addImage(list()->rowItem(row)->editor()->flatten(true, false));
    return dialog;
}

void Tst_Surfaces::showPrint(const Visit &visit) {
    const QByteArray part(m_part);
    FakePrinters &printers = m_session->platform->printerList;
    if (part != "none")
        printers.add("Office"_qs);
    if (part == "settings") {
        const auto printer = printers.open("Office"_qs);
        PrinterPropertiesDialog dialog("Office"_qs, *printer, printer->defaultMode(), m_window.get());
        openDialog(dialog, visit);
        return;
    }
    const auto dialog = makePrintDialog();
    if (part == "margins") {
        dialog->findChild<QAbstractButton *>("orientationLandscape_"_qs)->click();
        dialog->findChild<QAbstractButton *>("scaleActual_"_qs)->click();
        dialog->findChild<QAbstractButton *>("printBorder_"_qs)->click();
    }
    openDialog(*dialog, [&](QWidget *window) {
        auto *pages = window->findChild<QLabel *>("pages_"_qs);
        if (part != "none")
            QTRY_VERIFY(pages->text().startsWith(QLatin1Char('1')));
        if (part == "margins") {
            window->findChild<QAbstractButton *>("toNextPage_"_qs)->click();
            QTRY_VERIFY(pages->text().startsWith(QLatin1Char('2')));
        }
        auto *bar = window->findChild<QScrollArea *>()->verticalScrollBar();
        bar->setValue(part == "margins" ? bar->maximum() : 0);
        settle();
        visit(window);
    });
}

void Tst_Surfaces::addVisit(ModalAnswers &answers, const Visit &visit) {
    answers.add([visit](QWidget *dialog) {
        settle();
        visit(dialog);
        dialog->close();
    });
}

void Tst_Surfaces::showExitQuestion(const Visit &visit) {
    preferences()->SetBool(TindraPreferences::TrayMode, false);
    ModalAnswers answers;
    addVisit(answers, visit);
    m_window->close();
    QTRY_VERIFY(answers.isDone());
}

void Tst_Surfaces::showFailedCapture(const Visit &visit) {
    ModalAnswers answers;
    addVisit(answers, visit);
    m_window->hide();
    treat("/path /nothing.png"_qs);
    QTRY_VERIFY(answers.isDone());
}

// As after a sudden end: the captures are left in the work folder.
void Tst_Surfaces::showRestoredCaptures(const Visit &visit) {
    m_window.reset();
    start();
    ModalAnswers answers;
    addVisit(answers, visit);
    treat("/path \"%1\" /point 10 10"_qs.arg(capture("d"_qs)));
    QTRY_VERIFY(answers.isDone());
}

// From a server that accepts and says nothing.
void Tst_Surfaces::showDownload(const Visit &visit) {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    FileDownloadDialog dialog("http://127.0.0.1:%1/file"_qs.arg(server.serverPort()),
                              m_target->filePath("file"_qs), m_window.get());
    // The transfer runs in an event loop of its own as soon as the dialog is seen.
    bool isVisited = false;
    QTimer::singleShot(100, &dialog, [&] {
        isVisited = true;
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        dialog.findChild<QProgressBar *>()->setValue(40);
        settle();
        visit(&dialog);
        dialog.close();
    });
    dialog.show();
    QTRY_VERIFY(isVisited && !dialog.isVisible());
}

void Tst_Surfaces::showFileDialog(const Visit &visit) {
    const QByteArray part(m_part);
    QVERIFY(QDir(m_target->path()).mkdir("2023"_qs));
    QImage image(640, 480, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (const QString &name : {"2024-01-02 03;04;05.png"_qs, "20240506_070809.png"_qs})
        QVERIFY(image.save(m_target->filePath(name)));
    // Pictures are to be the same at each run: this folder has another path each time.
    const auto visitFiles = [&visit](QWidget *dialog) {
        auto *path = dialog->findChild<QComboBox *>("lookInCombo"_qs);
        path->setItemText(path->currentIndex(), "/var/lib/pictures"_qs);
        settle();
        visit(dialog);
    };
    ModalAnswers answers;
    if (part == "folder") {
        addVisit(answers, visitFiles);
        FileDialog::askFolder(m_window.get(), QString(), m_target->path());
    } else {
        preferences()->SetString(TindraPreferences::FilePath, m_target->path());
        FileNameUtil::setClock([] { return QDateTime({2024, 5, 6}, {7, 8, 9}); });
        addVisit(answers, [&](QWidget *dialog) {
            if (part == "save") {
                visitFiles(dialog);
                return;
            }
            ModalAnswers question;
            addVisit(question, visit);
            dialog->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Save)->click();
            QVERIFY(question.isDone());
        });
        m_window->onClickSave();
        FileNameUtil::setClock({});
    }
    QVERIFY(answers.isDone());
}

QStringList Tst_Surfaces::cutOff(QWidget *window) {
    QStringList cut;
    for (const QWidget *widget : partsOf(window)) {
        if (!textFits(widget))
            cut << nameOf(widget);
    }
    return cut;
}

QStringList Tst_Surfaces::untranslated(QWidget *window) {
    // Names, keys, units, formats, addresses and what the user wrote.
    static const QRegularExpression foreign(
        "^(Tindra|Office|Letter.*|A\\d \\(.*|Ctrl|Alt|Shift|Win|log_level_\\w+|PNG|JPG|BMP|GIF|WEBP|\\d+px|#[0-9a-fA-F]*|www\\.\\S+|/\\S.*|\\d.*)$"_qs);
    static const QRegularExpression word("[A-Za-z]{2}"_qs);
    static const QRegularExpression hangul("[\\x{ac00}-\\x{d7a3}]"_qs);
    QStringList english;
    for (const QString &text : textsOf(window)) {
        if (word.match(text).hasMatch() && !hangul.match(text).hasMatch() && !foreign.match(text).hasMatch())
            english << text;
    }
    return english;
}

QStringList Tst_Surfaces::withoutName(QWidget *window) {
    static const QRegularExpression letter("\\w"_qs, QRegularExpression::UseUnicodePropertiesOption);
    QStringList nameless;
    for (QWidget *widget : partsOf(window)) {
        if (isControl(widget) && !letter.match(accessibleNameOf(widget)).hasMatch())
            nameless << nameOf(widget);
    }
    return nameless;
}

void Tst_Surfaces::textsFitAreKoreanAndNameEveryControl() {
    present([](QWidget *window) {
        const QString folder = qEnvironmentVariable("TINDRA_TEST_PICTURES");
        if (!folder.isEmpty())
            window->grab().save("%1/%2-%3.png"_qs.arg(folder, QString::fromLatin1(QTest::currentDataTag()))
                                    .arg(qRound(scale() * 100)));
        for (const QStringList &complaints : {cutOff(window), untranslated(window), withoutName(window)})
            QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join("; "_qs)));
    });
}

void Tst_Surfaces::enter(QWidget *window) {
    QFETCH(int, surface);
    if (!surfaces().at(surface).entering)
        return;
    // Off screen each window that appears gets the keyboard; no window manager gives it to one that refuses.
    m_window->activateWindow();
    QTRY_COMPARE(QGuiApplication::focusWindow(), m_window->windowHandle());
    type(surfaces().at(surface).entering);
    QTRY_COMPARE(QGuiApplication::focusWindow(), window->windowHandle());
}

void Tst_Surfaces::keyboardReachesControlsAndShowsIt() {
    present([this](QWidget *window) {
        enter(window);
        QList<QWidget *> missing;
        for (QWidget *widget : partsOf(window)) {
            if (isControl(widget) && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus))
                missing << widget;
        }
        QStringList unseen;
        const auto press = [&](int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
            type(key, modifiers);
            QWidget *focused = QApplication::focusWidget();
            if (focused && missing.removeOne(focused) && !showsFocus(focused))
                unseen << nameOf(focused);
        };
        const int controls = missing.size();
        QList<QWidget *> excluding;
        for (int tabs = 0; tabs <= controls; ++tabs) {
            press(Qt::Key_Tab);
            auto *button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
            if (button && (button->group() || button->autoExclusive()))
                excluding << button;
        }
        // The toolkit's own dialogs have controls that only the way back comes to.
        const int tabsBack = qobject_cast<QFileDialog *>(window) ? controls : 0;
        for (int tabs = 0; tabs < tabsBack && !missing.isEmpty(); ++tabs)
            press(Qt::Key_Backtab, Qt::ShiftModifier);
        // Of buttons that exclude each other Tab comes to one, and the arrows to the others.
        for (QWidget *button : qAsConst(excluding)) {
            button->setFocus();
            for (const int arrow : {Qt::Key_Right, Qt::Key_Left, Qt::Key_Down, Qt::Key_Right, Qt::Key_Left,
                                    Qt::Key_Down, Qt::Key_Right, Qt::Key_Left, Qt::Key_Down}) {
                for (int presses = 0; presses < (arrow == Qt::Key_Down ? 1 : controls) && !missing.isEmpty();
                     ++presses)
                    press(arrow);
            }
        }
        QStringList unreached;
        for (const QWidget *widget : qAsConst(missing))
            unreached << nameOf(widget);
        QVERIFY2(unreached.isEmpty(), qPrintable(unreached.join("; "_qs)));
        QVERIFY2(unseen.isEmpty(), qPrintable(unseen.join("; "_qs)));
    });
}

QTEST_MAIN(Tst_Surfaces)
#include "tst_surfaces.moc"

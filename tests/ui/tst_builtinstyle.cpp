#include "support/fakeplatform.h"
#include "ui/builtinstyle.h"
#include "ui/stylesheettext.h"
#include "ui/uistyler.h"
#include "ui/uistylerproperties.h"

#include <QDialogButtonBox>
#include <QDirIterator>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGlyphRun>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPixmap>
#include <QProgressBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QRawFont>
#include <QRegularExpression>
#include <QSettings>
#include <QTextLayout>
#include <QVBoxLayout>
#include <QtTest>

/// The look as it is compiled in: its fonts, and sheets without mistakes that Qt would pass over.
class Tst_BuiltInStyle : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { FakePlatform::install(); }
    void lettersComeFromOneFamily_data();
    void lettersComeFromOneFamily();
    void substitutesStandOnce();
    void lineInPlaceOfTheShadow_data();
    void lineInPlaceOfTheShadow();
    void everyVariableIsInTheTable_data();
    void everyVariableIsInTheTable();
    void everyPictureIsThere_data();
    void everyPictureIsThere();
    void isReadWithoutComplaint_data();
    void isReadWithoutComplaint();
    void mistakesAreComplainedAbout_data();
    void mistakesAreComplainedAbout();
    void declarationsAreWhole_data();
    void declarationsAreWhole();
    void sectionsStandInTheirOrder();
    void declarationsStandInTheirOrder();
    void dialogsLookAlike_data();
    void dialogsLookAlike();
    void supplementIsOneLineAroundWhatFloats();
    void looksOfTheBasicWidgets_data();
    void looksOfTheBasicWidgets();
    void statesOfIndicators_data();
    void statesOfIndicators();
    void disabledPicturesAreThoseOfTheEnabled_data();
    void disabledPicturesAreThoseOfTheEnabled();
    void standardButtonsHaveNoIcons();
    void questionsOfTheToolkitHaveOurPicture();
    void progressBarKeepsItsHeight();
    void pressIsToldFromHover_data();
    void pressIsToldFromHover();

private:
    /// One selector with all that its block declares.
    struct Rule {
        QString selector;
        QStringList declarations;
    };
    static QVector<Rule> rules(const QString &path);
    static void addSheets();
    static QString sheet(const QString &path);
    static QString withoutComments(QString text);
    /// What Qt says when it takes that sheet for that scale.
    static QStringList complaints(const QString &text, double scale);
};

namespace {

QStringList messages;

void collect(QtMsgType, const QMessageLogContext &, const QString &text) {
    messages.append(text);
}

const QString mainSheet = QStringLiteral(":/style/editor.qss");
const QString supplement = QStringLiteral(":/style/editor_non_dwm_shadows.qss");
const QString table = QStringLiteral(":/style/editor_variables.ini");

} // namespace

void Tst_BuiltInStyle::addSheets() {
    QTest::addColumn<QString>("path");
    QTest::newRow("sheet") << mainSheet;
    QTest::newRow("supplement") << supplement;
}

QString Tst_BuiltInStyle::sheet(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString Tst_BuiltInStyle::withoutComments(QString text) {
    static const QRegularExpression comment(QStringLiteral("/\\*.*?\\*/"),
                                            QRegularExpression::DotMatchesEverythingOption);
    return text.remove(comment);
}

QVector<Tst_BuiltInStyle::Rule> Tst_BuiltInStyle::rules(const QString &path) {
    static const QRegularExpression block(QStringLiteral("([^{}]+)\\{([^{}]*)\\}"));
    QVector<Rule> rules;
    auto blocks = block.globalMatch(withoutComments(sheet(path)));
    while (blocks.hasNext()) {
        const QRegularExpressionMatch match = blocks.next();
        QStringList declarations;
        for (const QString &declaration : match.captured(2).split(QLatin1Char(';')))
            declarations.append(declaration.simplified());
        declarations.removeAll(QString());
        for (const QString &selector : match.captured(1).split(QLatin1Char(',')))
            rules.append({selector.simplified(), declarations});
    }
    return rules;
}

QStringList Tst_BuiltInStyle::complaints(const QString &text, double scale) {
    const QSettings colors(table, QSettings::IniFormat);
    const auto lookUp = [&](const QString &key) { return colors.value(key).toString(); };
    messages.clear();
    const QtMessageHandler before = qInstallMessageHandler(collect);
    {
        QLabel window;
        window.setStyleSheet(preprocessStyleSheet(text, lookUp, scale));
        window.ensurePolished();
    }
    qInstallMessageHandler(before);
    return messages;
}

void Tst_BuiltInStyle::lettersComeFromOneFamily_data() {
    QTest::addColumn<QString>("family");
    QTest::newRow("the sheet's") << QStringLiteral("Malgun Gothic");
    QTest::newRow("the link's") << QStringLiteral("dotum");
}

void Tst_BuiltInStyle::lettersComeFromOneFamily() {
    QFETCH(QString, family);
    if (QFontDatabase().families().contains(family))
        QSKIP("The family itself is installed.");
    installBuiltInStyle(qApp);
    QLabel window;
    window.setStyleSheet(QStringLiteral("* { font-family: \"%1\"; font-size: 12px; }").arg(family));
    window.ensurePolished();
    QTextLayout layout(QStringLiteral("Tindra 0123 (&S) 저장하시겠습니까?"), window.font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList used;
    for (const QGlyphRun &run : layout.glyphRuns())
        used.append(run.rawFont().familyName().toLower());
    used.removeDuplicates();
    QCOMPARE(used, QStringList{QStringLiteral("noto sans cjk kr")});
}

void Tst_BuiltInStyle::substitutesStandOnce() {
    installBuiltInStyle(qApp);
    installBuiltInStyle(qApp);
    QCOMPARE(QFont::substitutes(QStringLiteral("Malgun Gothic")),
             (QStringList{QStringLiteral("noto sans cjk kr"), QStringLiteral("nanumgothic")}));
}

void Tst_BuiltInStyle::lineInPlaceOfTheShadow_data() {
    QTest::addColumn<bool>("shadow");
    QTest::addColumn<QStringList>("sheets");
    QTest::newRow("desktop with shadows") << true << QStringList{mainSheet};
    QTest::newRow("desktop without") << false << QStringList{mainSheet, supplement};
}

void Tst_BuiltInStyle::lineInPlaceOfTheShadow() {
    QFETCH(bool, shadow);
    FakePlatform::install()->nativeShadow = shadow;
    installBuiltInStyle(qApp);
    QTEST(qApp->property(UIStylerProperty::QssPaths).toStringList(), "sheets");
    QCOMPARE(qApp->property(UIStylerProperty::ColorsIniPath).toString(), table);
}

void Tst_BuiltInStyle::everyVariableIsInTheTable_data() {
    addSheets();
}

void Tst_BuiltInStyle::everyVariableIsInTheTable() {
    QFETCH(QString, path);
    const QStringList keys = QSettings(table, QSettings::IniFormat).allKeys();
    auto matches =
        QRegularExpression(QStringLiteral("var\\(([^)]*)\\)")).globalMatch(withoutComments(sheet(path)));
    QVERIFY(matches.hasNext());
    while (matches.hasNext()) {
        const QString key = matches.next().captured(1);
        QVERIFY2(keys.contains(key), qPrintable(key));
    }
}

void Tst_BuiltInStyle::everyPictureIsThere_data() {
    QTest::addColumn<QString>("picture");
    auto matches =
        QRegularExpression(QStringLiteral("url\\(([^)]*)\\)")).globalMatch(withoutComments(sheet(mainSheet)));
    QVERIFY(matches.hasNext());
    while (matches.hasNext()) {
        const QString picture = matches.next().captured(1);
        QTest::newRow(qPrintable(picture)) << picture;
    }
}

void Tst_BuiltInStyle::everyPictureIsThere() {
    QFETCH(QString, picture);
    QVERIFY(!QPixmap(picture).isNull());
}

void Tst_BuiltInStyle::isReadWithoutComplaint_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<double>("scale");
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        QTest::addRow("sheet at %g", scale) << mainSheet << scale;
        QTest::addRow("supplement at %g", scale) << supplement << scale;
    }
}

void Tst_BuiltInStyle::isReadWithoutComplaint() {
    QFETCH(QString, path);
    QFETCH(double, scale);
    QVERIFY(!sheet(path).isEmpty());
    QCOMPARE(complaints(sheet(path), scale), QStringList());
}

void Tst_BuiltInStyle::mistakesAreComplainedAbout_data() {
    QTest::addColumn<QString>("text");
    QTest::newRow("bracket that stays open") << QStringLiteral("QLabel { color: red;");
    QTest::newRow("bracket too many") << QStringLiteral("QLabel { color: red; }} QLabel { color: red; }");
    QTest::newRow("unknown property") << QStringLiteral("QLabel { colour: red; }");
    QTest::newRow("scale that is no number") << QStringLiteral("QLabel { min-width: scale(a)px }}");
}

void Tst_BuiltInStyle::mistakesAreComplainedAbout() {
    QFETCH(QString, text);
    QVERIFY(!complaints(text, 1.0).isEmpty());
}

void Tst_BuiltInStyle::declarationsAreWhole_data() {
    addSheets();
}

/// Qt says nothing about these.
void Tst_BuiltInStyle::declarationsAreWhole() {
    QFETCH(QString, path);
    static const QRegularExpression whole(QStringLiteral("^[a-zA-Z-]+: \\S.*$"));
    static const QRegularExpression badScale(QStringLiteral("scale\\((?!\\d+\\))"));
    for (const Rule &rule : rules(path)) {
        QVERIFY2(!rule.selector.isEmpty(), qPrintable(rule.declarations.join(QLatin1Char(';'))));
        for (const QString &declaration : rule.declarations) {
            QVERIFY2(whole.match(declaration).hasMatch(),
                     qPrintable(rule.selector + QLatin1Char(' ') + declaration));
            QVERIFY2(!badScale.match(declaration).hasMatch(), qPrintable(declaration));
        }
    }
}

void Tst_BuiltInStyle::sectionsStandInTheirOrder() {
    const QStringList order{
        QStringLiteral("basic widgets"),
        QStringLiteral("ToolButton"),
        QStringLiteral("TindraEditor"),
        QStringLiteral("Popup"),
        QStringLiteral("PositiveButton, NegativeButton"),
        QStringLiteral("ItemButton"),
        QStringLiteral("images of the popups"),
        QStringLiteral("ColorSelectPopup, ColorPicker"),
        QStringLiteral("EditorView"),
        QStringLiteral("HistoryWidget"),
        QStringLiteral("BannerFrame"),
        QStringLiteral("ConfirmSaveDialog"),
        QStringLiteral("PreferencesDialog"),
        QStringLiteral("ImagePreferencesWidget"),
        QStringLiteral("ShortcutPreferencesWidget"),
        QStringLiteral("FileNameFormatSettingDialog"),
        QStringLiteral("SizeInputDialog"),
        QStringLiteral("MessageDialog"),
        QStringLiteral("AboutDialog"),
        QStringLiteral("PrintPreviewDialog"),
        QStringLiteral("CoachmarkWidget"),
    };
    static const QRegularExpression heading(QStringLiteral("/\\* ---- (.*) ---- \\*/"));
    auto headings = heading.globalMatch(sheet(mainSheet));
    QStringList found;
    while (headings.hasNext())
        found.append(headings.next().captured(1));
    QCOMPARE(found, order);
}

void Tst_BuiltInStyle::declarationsStandInTheirOrder() {
    // Font, background, border, size, padding, margin, the rest.
    static const QRegularExpression groups[] = {
        QRegularExpression(QStringLiteral("^(color|font.*)$")),
        QRegularExpression(QStringLiteral("^background")),
        QRegularExpression(QStringLiteral("^border")),
        QRegularExpression(QStringLiteral("^(min-|max-)?(width|height)$")),
        QRegularExpression(QStringLiteral("^padding")),
        QRegularExpression(QStringLiteral("^margin"))};
    for (const Rule &rule : rules(mainSheet)) {
        std::ptrdiff_t before = 0;
        for (const QString &declaration : rule.declarations) {
            const QString property = declaration.section(QLatin1Char(':'), 0, 0);
            const auto group = std::find_if(std::begin(groups), std::end(groups),
                                            [&](const QRegularExpression &names) {
                                                return names.match(property).hasMatch();
                                            }) -
                               std::begin(groups);
            QVERIFY2(group >= before, qPrintable(rule.selector + QStringLiteral(": ") + property));
            before = group;
        }
    }
}

void Tst_BuiltInStyle::dialogsLookAlike_data() {
    QTest::addColumn<QString>("dialog");
    for (const char *dialog :
         {"ConfirmSaveDialog", "PreferencesDialog", "FileNameFormatSettingDialog", "SizeInputDialog",
          "MessageDialog", "AboutDialog", "DebugDialog", "FileDownloadDialog", "PrintPreviewDialog",
          "PrinterPropertiesDialog", "QFileDialog", "QMessageBox"})
        QTest::newRow(dialog) << QString::fromLatin1(dialog);
}

void Tst_BuiltInStyle::dialogsLookAlike() {
    QFETCH(QString, dialog);
    QStringList declarations;
    for (const Rule &rule : rules(mainSheet)) {
        if (rule.selector == dialog)
            declarations += rule.declarations;
    }
    QVERIFY(declarations.contains(QStringLiteral("background-color: var(color2)")));
    QVERIFY(declarations.contains(QStringLiteral("border-top: scale(1)px solid var(color31)")));
}

void Tst_BuiltInStyle::supplementIsOneLineAroundWhatFloats() {
    QStringList selectors;
    for (const Rule &rule : rules(supplement)) {
        selectors.append(rule.selector);
        QCOMPARE(rule.declarations, QStringList{QStringLiteral("border: scale(1)px solid var(color6)")});
    }
    QCOMPARE(selectors, (QStringList{QStringLiteral("QMenu"), QStringLiteral("CropPopup"),
                                     QStringLiteral("TextPopup")}));
}

void Tst_BuiltInStyle::looksOfTheBasicWidgets_data() {
    QTest::addColumn<QString>("selector");
    QTest::addColumn<QString>("declaration");
    const auto add = [](const char *selector, const char *declaration) {
        QTest::addRow("%s { %s }", selector, declaration)
            << QString::fromLatin1(selector) << QString::fromLatin1(declaration);
    };
    add("*", "font-family: \"Malgun Gothic\"");
    add("*", "font-size: scale(12)px");
    add("QPushButton", "color: var(color8)");
    add("QPushButton", "background-color: var(color2)");
    add("QPushButton", "border: scale(1)px solid var(color9)");
    add("QPushButton", "border-radius: scale(3)px");
    add("QPushButton", "outline: none");
    add("QPushButton", "min-height: scale(24)px");
    add("QPushButton:hover", "background-color: var(color21)");
    add("QPushButton:pressed", "background-color: var(color22)");
    add("QPushButton:checked", "background-color: var(color22)");
    add("QPushButton:disabled", "color: var(color9)");
    add("QPushButton:disabled", "border-color: var(color34)");
    add("QPushButton::menu-indicator", "width: scale(7)px");
    add("QPushButton::menu-indicator", "height: scale(4)px");
    add("QPushButton::menu-indicator", "subcontrol-position: center right");
    add("QPushButton::menu-indicator", "left: -scale(5)px");
    add("QLineEdit", "border: scale(1)px solid var(color9)");
    add("QLineEdit", "padding-left: scale(6)px");
    add("QLineEdit", "min-height: scale(24)px");
    add("QCheckBox::indicator", "width: scale(12)px");
    add("QCheckBox::indicator", "height: scale(12)px");
    add("QMenu::indicator", "width: scale(12)px");
    add("QMenu::indicator", "height: scale(12)px");
    add("QRadioButton", "spacing: scale(6)px");
    add("QRadioButton::indicator", "width: scale(16)px");
    add("QRadioButton::indicator", "height: scale(16)px");
    add("QComboBox", "border: scale(1)px solid var(color9)");
    add("QComboBox", "padding-left: scale(9)px");
    add("QComboBox", "min-height: scale(24)px");
    add("QComboBox::down-arrow", "width: scale(7)px");
    add("QComboBox::down-arrow", "height: scale(4)px");
    add("QSpinBox", "min-height: scale(24)px");
    add("QScrollBar:vertical", "max-width: scale(18)px");
    add("QScrollBar:vertical", "margin: scale(5)px");
    add("QScrollBar:horizontal", "max-height: scale(18)px");
    add("QScrollBar:horizontal", "margin: scale(5)px");
    for (const char *hidden :
         {"add-line", "sub-line", "up-arrow", "down-arrow", "left-arrow", "right-arrow"}) {
        const QByteArray part = QByteArray("QScrollBar::") + hidden;
        add(part, "width: 0px");
        add(part, "height: 0px");
    }
    add("QProgressBar", "border: scale(1)px solid var(color9)");
    add("QProgressBar", "border-radius: scale(3)px");
    add("QProgressBar::chunk", "background-color: var(color13)");
    add("QFileDialog QToolButton", "background-color: transparent");
    add("QScrollBar::handle", "background-color: var(color2)");
    add("QScrollBar::handle", "border: scale(1)px solid var(color20)");
    add("QScrollBar::handle", "border-radius: scale(3)px");
    add("QToolBar::separator", "background-color: var(color39)");
    add("QMenu", "font-size: scale(13)px");
    add("QMenu::item", "min-width: scale(140)px");
    add("QMenu::item", "min-height: scale(36)px");
    add("QMenu::item", "padding-left: scale(40)px");
    add("QMenu::item", "padding-right: scale(14)px");
    add("QMenu::item:selected", "background-color: var(color22)");
    add("QFrame[frameShape=\"4\"]", "background-color: var(color6)");
    add("QFrame[frameShape=\"4\"]", "max-height: scale(1)px");
    add("QFrame[frameShape=\"5\"]", "max-width: scale(1)px");
    add("QListWidget::item", "min-height: scale(24)px");
    add("#hasShadowEffect", "background-color: var(color2)");
    add("TindraEditor", "min-width: scale(910)px");
    add("TindraEditor", "min-height: scale(300)px");
    add("PositiveButton", "background-color: var(color13)");
    add("PositiveButton", "min-width: scale(85)px");
    add("PositiveButton", "max-width: scale(85)px");
    add("PositiveButton:hover", "background-color: var(color17)");
    add("PositiveButton:pressed", "background-color: var(color18)");
    add("PositiveButton:disabled", "background-color: var(color34)");
    add("NegativeButton", "min-width: scale(85)px");
    add("NegativeButton", "max-width: scale(85)px");
    add("ColorSquare", "min-width: scale(132)px");
    add("ColorSquare", "max-height: scale(100)px");
    add("GradientSlider", "max-width: scale(16)px");
    add("GradientSlider", "min-height: scale(100)px");
    add("MessageDialog #icon_", "min-width: scale(28)px");
    add("MessageDialog #icon_", "max-height: scale(28)px");
    add("MessageDialog #icon_[icon=\"NoIcon\"]", "image: none");
    const QString picture = QStringLiteral("image: url(:/res/MessageDialog/%1.svg)");
    for (const char *icon : {"Information", "Warning", "Critical", "Question", "Success"})
        add(qPrintable(QStringLiteral("MessageDialog #icon_[icon=\"%1\"]").arg(QLatin1String(icon))),
            qPrintable(picture.arg(QString::fromLatin1(icon).toLower())));
    add("PreferencesDialog #default_", "border-radius: 0px");
    add("PreferencesDialog #default_", "text-align: left");
    add("MessageDialog #text_", "font-size: scale(13)px");
    add("MessageDialog #text_", "color: var(color1)");
    add("MessageDialog #informativeText_", "font-size: scale(12)px");
    add("MessageDialog #informativeText_", "color: var(color19)");
    add("MessageDialog #bottom_", "background-color: var(color14)");
    add("MessageDialog #positiveButton", "background-color: var(color13)");
    add("AboutDialog #labelAbout", "min-width: scale(439)px");
    add("AboutDialog #labelAbout", "max-height: scale(272)px");
    add("CoachmarkWidget #label", "color: var(color2)");
}

void Tst_BuiltInStyle::looksOfTheBasicWidgets() {
    QFETCH(QString, selector);
    QFETCH(QString, declaration);
    const QString property = declaration.section(QLatin1Char(':'), 0, 0) + QLatin1Char(':');
    QString last;
    for (const Rule &rule : rules(mainSheet)) {
        if (rule.selector != selector)
            continue;
        for (const QString &other : rule.declarations) {
            if (other.startsWith(property))
                last = other;
        }
    }
    QCOMPARE(last, declaration);
}

void Tst_BuiltInStyle::statesOfIndicators_data() {
    QTest::addColumn<QString>("state");
    QTest::addColumn<QString>("picture");
    const auto row = [](const char *state, const char *picture) {
        QTest::newRow(state) << QString::fromLatin1(state) << QString::fromLatin1(picture);
    };
    for (const char *kind : {"QCheckBox checkbox", "QRadioButton radio"}) {
        const QList<QByteArray> names = QByteArray(kind).split(' ');
        const QByteArray indicator = names[0] + "::indicator";
        const QByteArray folder = ":/res/common/" + names[1] + "/";
        row(indicator + ":unchecked", folder + "unchecked.svg");
        row(indicator + ":unchecked:hover", folder + "unchecked_hover.svg");
        row(indicator + ":unchecked:focus", folder + "unchecked_hover.svg");
        row(indicator + ":unchecked:disabled", folder + "unchecked_disabled.svg");
        row(indicator + ":checked", folder + "checked.svg");
        row(indicator + ":checked:disabled", folder + "checked_disabled.svg");
    }
    row("QMenu::indicator:checked", ":/res/common/checkbox/menu_checked.svg");
    row("QMenu::indicator:checked:disabled", ":/res/common/checkbox/menu_checked_disabled.svg");
}

void Tst_BuiltInStyle::statesOfIndicators() {
    QFETCH(QString, state);
    QFETCH(QString, picture);
    QStringList declarations;
    for (const Rule &rule : rules(mainSheet)) {
        if (rule.selector == state)
            declarations += rule.declarations;
    }
    QCOMPARE(declarations, QStringList{QStringLiteral("image: url(%1)").arg(picture)});
}

void Tst_BuiltInStyle::disabledPicturesAreThoseOfTheEnabled_data() {
    QTest::addColumn<QString>("path");
    const QString ending = QStringLiteral("_disabled.svg");
    QDirIterator files(QStringLiteral(":/res"), {QLatin1Char('*') + ending}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QTest::newRow(qPrintable(path)) << path.chopped(ending.size());
    }
}

// One pale ink for both tones, 35 % of it on white; white stays.
void Tst_BuiltInStyle::disabledPicturesAreThoseOfTheEnabled() {
    QFETCH(QString, path);
    QString expected = sheet(path + QStringLiteral(".svg"));
    QVERIFY(!expected.isEmpty());
    static const QRegularExpression tone(QStringLiteral("#222222|#007FF5"));
    static const QRegularExpression opacity(QStringLiteral(" (stroke|fill)-opacity=\"[0-9.]+\""));
    QVERIFY(expected.contains(tone));
    expected.replace(tone, QStringLiteral("#B2B2B2")).remove(opacity);
    QCOMPARE(sheet(path + QStringLiteral("_disabled.svg")), expected);
}

// Most desktops have them, with a floppy disk and a red cross.
void Tst_BuiltInStyle::standardButtonsHaveNoIcons() {
    class Desktop : public QProxyStyle {
    public:
        int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                      QStyleHintReturn *data) const override {
            return hint == SH_DialogButtonBox_ButtonsHaveIcons
                       ? 1
                       : QProxyStyle::styleHint(hint, option, widget, data);
        }
    };
    QApplication::setStyle(new Desktop);
    installBuiltInStyle(qApp);
    QWidget window;
    window.show();
    QTest::qWait(10);
    QFileDialog dialog(&window);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    const QMessageBox question(QMessageBox::Warning, QString(), QString(), QMessageBox::Yes | QMessageBox::No,
                               &window);
    const auto buttons = dialog.findChild<QDialogButtonBox *>()->buttons() + question.buttons();
    QCOMPARE(buttons.size(), 4);
    for (const QAbstractButton *button : buttons)
        QVERIFY2(button->icon().isNull(), qPrintable(button->text()));
}

void Tst_BuiltInStyle::questionsOfTheToolkitHaveOurPicture() {
    installBuiltInStyle(qApp);
    QWidget window;
    window.show();
    QTest::qWait(10);
    QMessageBox question(QMessageBox::Warning, QString(), QStringLiteral("?"), QMessageBox::Yes, &window);
    question.show();
    QTest::qWait(10);
    const QIcon ours(QStringLiteral(":/res/MessageDialog/warning.svg"));
    const int size = 28 * qRound(QGuiApplication::primaryScreen()->logicalDotsPerInchX()) / 96;
    QCOMPARE(question.iconPixmap().toImage(), ours.pixmap(size).toImage());
}

void Tst_BuiltInStyle::progressBarKeepsItsHeight() {
    installBuiltInStyle(qApp);
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *bar = new QProgressBar(&window);
    layout->addWidget(bar);
    // As in a dialog, whose text may need more.
    QFont large = bar->font();
    large.setPixelSize(30);
    bar->setFont(large);
    window.resize(200, 200);
    window.show();
    QTest::qWait(10);
    const int dpi = qRound(QGuiApplication::primaryScreen()->logicalDotsPerInchX());
    QCOMPARE(bar->height(), 16 * dpi / 96 + 2 * (dpi / 96));
}

void Tst_BuiltInStyle::pressIsToldFromHover_data() {
    QTest::addColumn<QString>("button");
    for (const char *button :
         {"#bannerClose_", "PrintPreviewDialog #toPrevPage_", "PrintPreviewDialog #toNextPage_"})
        QTest::newRow(button) << QString::fromLatin1(button);
}

void Tst_BuiltInStyle::pressIsToldFromHover() {
    QFETCH(QString, button);
    QHash<QString, QStringList> states;
    for (const Rule &rule : rules(mainSheet)) {
        if (rule.selector.startsWith(button + QLatin1Char(':')))
            states[rule.selector.mid(button.size())] += rule.declarations;
    }
    QVERIFY(!states[QStringLiteral(":hover")].isEmpty());
    QVERIFY(!states[QStringLiteral(":pressed")].isEmpty());
    QVERIFY(states[QStringLiteral(":hover")] != states[QStringLiteral(":pressed")]);
}

QTEST_MAIN(Tst_BuiltInStyle)
#include "tst_builtinstyle.moc"

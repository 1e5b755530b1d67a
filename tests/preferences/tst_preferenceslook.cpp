#include "preferences/dialog/sizeinputdialog.h"
#include "preferences/dialogtest.h"
#include "ui/builtinstyle.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QScreen>
#include <QStackedWidget>
#include <QTableWidget>
#include <QTranslator>

/// The dialog under the real style sheet, at the scale of this run and in both languages: sizes are those of
/// the sheet and nothing is cut off. With TINDRA_TEST_PICTURES set, pictures of it are left in that folder.
class Tst_PreferencesLook : public DialogTest {
    Q_OBJECT
private slots:
    void initTestCase();
    void init() { freshProfile(); }
    void cleanup();

    void sizesOfTheSheet();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
    void textsOfTheListFit_data() { languages(); }
    void textsOfTheListFit();
    void presetsFillTheTable();
    void sizeInputFits_data() { languages(); }
    void sizeInputFits();
    void iconsAreThere();

private:
    static double scale() { return QGuiApplication::primaryScreen()->logicalDotsPerInchX() / 96.0; }
    static int scaled(int size) { return static_cast<int>(size * scale()); }
    static void languages();
    void speak(const QString &language);
    static void picture(QWidget *widget, const QString &name);
    static int naturalTextWidth(const QWidget *widget);

    QTranslator m_translator;
};

void Tst_PreferencesLook::initTestCase() {
    FakePlatform::install();
    installBuiltInStyle(qApp);
}

void Tst_PreferencesLook::cleanup() {
    m_dialog.reset();
    QCoreApplication::removeTranslator(&m_translator);
}

void Tst_PreferencesLook::languages() {
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << "en";
    QTest::newRow("Korean") << "ko";
}

void Tst_PreferencesLook::speak(const QString &language) {
    if (language == "en"_qs)
        return;
    QVERIFY(m_translator.load(":/TindraEditor_%0.qm"_qs.arg(language)));
    QCoreApplication::installTranslator(&m_translator);
    FileNameUtil::initialize();
}

void Tst_PreferencesLook::picture(QWidget *widget, const QString &name) {
    const QString folder = qEnvironmentVariable("TINDRA_TEST_PICTURES");
    if (!folder.isEmpty())
        widget->grab().save("%1/%2-%3.png"_qs.arg(folder, name).arg(scale()));
}

void Tst_PreferencesLook::sizesOfTheSheet() {
    openDialog();
    QCOMPARE(m_dialog->size(), QSize(scaled(574), scaled(491) + scaled(1)));
    QCOMPARE(m_dialog->minimumSize(), m_dialog->maximumSize());
    auto *list = child<QListWidget>("preferencesList_");
    QCOMPARE(list->width(), scaled(108) + 2 * scaled(5) + 2 * scaled(1));
    for (int row = 0; row < list->count(); ++row)
        QCOMPARE(list->visualItemRect(list->item(row)).size(), QSize(scaled(108), scaled(28)));
    // The sheet speaks of what is within padding and border.
    QCOMPARE(widget("captureMode_")->minimumWidth(), scaled(100) + scaled(9) + 2 * scaled(1));
    QCOMPARE(widget("fixedPresets_")->minimumSize(),
             QSize(scaled(200) + 2 * scaled(1), scaled(72) + 2 * scaled(1)));
    QCOMPARE(widget("fixedPresets_")->maximumSize(), widget("fixedPresets_")->minimumSize());
}

void Tst_PreferencesLook::nothingIsCutOff_data() {
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("page");
    for (const QByteArray &language : {QByteArrayLiteral("en"), QByteArrayLiteral("ko")}) {
        for (int page = 0; page < 4; ++page)
            QTest::newRow(language + ", page " + QByteArray::number(page))
                << QString::fromLatin1(language) << page;
    }
}

int Tst_PreferencesLook::naturalTextWidth(const QWidget *widget) {
    if (const auto *label = qobject_cast<const QLabel *>(widget)) {
        if (label->wordWrap())
            return 0;
    }
    return widget->minimumSizeHint().width();
}

void Tst_PreferencesLook::nothingIsCutOff() {
    QFETCH(QString, language);
    QFETCH(int, page);
    speak(language);
    preferences()->SetSizePresets({{3840, 2160}, {1920, 1080}, {800, 600}, {640, 480}, {20, 20}});
    openDialog(page);
    QCoreApplication::processEvents();
    picture(m_dialog.get(), "page-%1-%2"_qs.arg(page).arg(language));
    // No layout needs more room than it has.
    for (const QWidget *form :
         {static_cast<const QWidget *>(m_dialog.get()),
          static_cast<const QWidget *>(child<QStackedWidget>("preferencesPages_")->currentWidget())}) {
        const QSize needed = form->layout()->totalMinimumSize();
        QVERIFY2(needed.width() <= form->width() && needed.height() <= form->height(),
                 qPrintable("%1 x %2"_qs.arg(needed.width()).arg(needed.height())));
    }
    const QList<QWidget *> all = m_dialog->findChildren<QWidget *>();
    int looked = 0;
    for (const QWidget *widget : all) {
        const bool hasText =
            qobject_cast<const QAbstractButton *>(widget) || qobject_cast<const QLabel *>(widget) ||
            qobject_cast<const QComboBox *>(widget) || qobject_cast<const QAbstractSpinBox *>(widget);
        if (!hasText || !widget->isVisible() || qobject_cast<const QAbstractItemView *>(widget->parent()))
            continue;
        ++looked;
        const QRect place(widget->mapTo(m_dialog.get(), QPoint()), widget->size());
        QVERIFY2(m_dialog->rect().contains(place), qPrintable(widget->objectName()));
        QVERIFY2(widget->width() >= naturalTextWidth(widget), qPrintable(widget->objectName()));
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
    }
    QVERIFY(looked >= 7);
}

void Tst_PreferencesLook::textsOfTheListFit() {
    QFETCH(QString, language);
    speak(language);
    openDialog();
    auto *list = child<QListWidget>("preferencesList_");
    for (int row = 0; row < list->count(); ++row) {
        const QListWidgetItem *item = list->item(row);
        const int text = list->fontMetrics().horizontalAdvance(item->text());
        QVERIFY2(list->iconSize().width() + text + scaled(12) <= scaled(108), qPrintable(item->text()));
    }
    QCOMPARE(list->iconSize(), QSize(scaled(18), scaled(18)));
    auto *button = child<QPushButton>("default_");
    button->menu()->popup(QPoint());
    for (const QAction *action : button->menu()->actions()) {
        QVERIFY(button->menu()->actionGeometry(const_cast<QAction *>(action)).width() >=
                button->menu()->fontMetrics().horizontalAdvance(action->text()) + scaled(54));
    }
    picture(button->menu(), "menu-%1"_qs.arg(language));
    button->menu()->close();
    auto *colors = child<QComboBox>("guidelineColor_");
    colors->showPopup();
    QCoreApplication::processEvents();
    picture(colors->view()->window(), "colors-%1"_qs.arg(language));
    colors->hidePopup();
}

void Tst_PreferencesLook::presetsFillTheTable() {
    preferences()->SetSizePresets({{3840, 2160}, {1920, 1080}, {800, 600}, {640, 480}, {20, 20}, {99, 98}});
    openDialog(1);
    QCoreApplication::processEvents();
    auto *table = child<QTableWidget>("fixedPresets_");
    for (int column = 0; column < 2; ++column)
        QCOMPARE(table->columnWidth(column), table->width() / 2);
    int height = 0;
    for (int row = 0; row < 3; ++row) {
        height += table->rowHeight(row);
        QVERIFY(table->rowHeight(row) >= table->fontMetrics().height());
    }
    // The last line is that of the frame.
    QCOMPARE(height, table->viewport()->height() + 1);
    QVERIFY(table->fontMetrics().horizontalAdvance("3840 x 2160"_qs) < table->columnWidth(0) - scaled(6));
}

void Tst_PreferencesLook::sizeInputFits() {
    QFETCH(QString, language);
    speak(language);
    const QList<QSize> presets;
    SizeInputDialog dialog(SizeInputDialog::Add, &presets);
    dialog.setSize({3840, 2160});
    QWidget &window = dialog;
    window.show();
    QCoreApplication::processEvents();
    picture(&window, "size-%1"_qs.arg(language));
    QCOMPARE(window.size(), QSize(scaled(236), scaled(125) + scaled(1)));
    const QSize needed = dialog.layout()->totalMinimumSize();
    QVERIFY(needed.width() <= window.width() && needed.height() <= window.height());
    QRect before;
    for (const char *name : {"ok_", "cancel_"}) {
        const auto *button = dialog.findChild<QWidget *>(QLatin1String(name));
        const QRect place(button->mapTo(&window, QPoint()), button->size());
        QVERIFY(window.rect().contains(place) && place.x() >= before.right() + scaled(8));
        before = place;
    }
    for (const char *name : {"width_", "height_"}) {
        const auto *box = dialog.findChild<QAbstractSpinBox *>(QLatin1String(name));
        QCOMPARE(box->maximumWidth(), box->minimumWidth());
        QCOMPARE(box->width(), scaled(64) + scaled(6) + 2 * scaled(1));
        const auto *edit = box->findChild<QLineEdit *>();
        QVERIFY(edit->fontMetrics().horizontalAdvance(edit->text()) < edit->width());
    }
}

void Tst_PreferencesLook::iconsAreThere() {
    openDialog();
    const auto *list = child<QListWidget>("preferencesList_");
    QSet<QByteArray> pictures;
    for (int row = 0; row < list->count(); ++row) {
        const QImage icon = list->item(row)->icon().pixmap(scaled(18)).toImage();
        QVERIFY(!icon.isNull());
        // Selected it keeps its colours.
        QCOMPARE(list->item(row)->icon().pixmap(scaled(18), QIcon::Selected).toImage(), icon);
        pictures.insert(
            QByteArray(reinterpret_cast<const char *>(icon.constBits()), int(icon.sizeInBytes())));
    }
    QCOMPARE(pictures.size(), 4);
}

QTEST_MAIN(Tst_PreferencesLook)
#include "tst_preferenceslook.moc"

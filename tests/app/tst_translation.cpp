#include "app/application.h"
#include "app/tindraeditor.h"
#include "output/filenameutil.h"
#include "support/fakeplatform.h"
#include "support/modalanswers.h"
#include "ui/messagedialog.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLibraryInfo>
#include <QMenu>
#include <QtTest>

/// The editor as it is built in Korean, on a system that is not.
class Tst_Translation : public QObject {
    Q_OBJECT

private slots:
    void doesNotFollowTheSystem();
    void theWindowSpeaksKorean();
    void birdsAreInTheirOrder();
    void fileNameStylesAreDescribed();
    void messagesHaveKoreanButtons();
    void dialogsOfTheToolkitSpeakKorean();
};

void Tst_Translation::doesNotFollowTheSystem() {
    QVERIFY(QLocale::system().language() != QLocale::Korean);
    QCOMPARE(QCoreApplication::translate("Toolbar", "save"), QStringLiteral("저장"));
}

void Tst_Translation::theWindowSpeaksKorean() {
    TindraEditor editor;
    QCOMPARE(editor.windowTitle(), QStringLiteral("Tindra"));
    const QMap<QString, QString> labels{{QStringLiteral("capture"), QStringLiteral("캡처")},
                                        {QStringLiteral("copy"), QStringLiteral("복사")},
                                        {QStringLiteral("figure"), QStringLiteral("도형")},
                                        {QStringLiteral("pen"), QStringLiteral("펜")},
                                        {QStringLiteral("highlighter"), QStringLiteral("형광펜")},
                                        {QStringLiteral("mosaic"), QStringLiteral("모자이크")},
                                        {QStringLiteral("eraser"), QStringLiteral("지우개")},
                                        {QStringLiteral("menu"), QStringLiteral("메뉴")}};
    for (auto label = labels.cbegin(); label != labels.cend(); ++label) {
        const auto *button = editor.findChild<QAbstractButton *>(label.key());
        QVERIFY2(button, qPrintable(label.key()));
        QCOMPARE(button->text(), label.value());
    }
}

void Tst_Translation::birdsAreInTheirOrder() {
    QStringList birds =
        QStringLiteral(
            "비둘기 오리 까치 독수리 갈매기 메추라기 종달새 두루미 제비 까마귀 뻐꾸기 꿩 닭 고니 기러기 "
            "논병아리 딱따구리 올빼미 부엉이 느시 뜸부기 매 솔개 조롱이 말똥가리 병아리 가마우지 왜가리 "
            "해오라기 따오기 아비 어치 꾀꼬리 할미새 직박구리 지빠귀 찌르레기 동고비 나무발발이 곤줄박이 "
            "오목눈이 참새 뱁새 황새 타조 펭귄 군함조 앵무새 백조")
            .split(QLatin1Char(' '));
    QCOMPARE(birds.size(), 49);
    birds.insert(41, birds.at(40)); // has two chances
    QCOMPARE(FileNameUtil::birdNames(), birds);
}

void Tst_Translation::fileNameStylesAreDescribed() {
    QStringList described;
    for (const auto &entry : FileNameUtil::formatEntries())
        described.append(entry.display);
    QCOMPARE(described, (QStringList{QStringLiteral("년월일_시분초"), QStringLiteral("년-월-일 시;분;초"),
                                     QStringLiteral("월-일 시;분;초"), QStringLiteral("년-월-일"),
                                     QStringLiteral("시;분;초"), QStringLiteral("새이름(종달새, 참새...)"),
                                     QStringLiteral("일련번호(0001, 0002...)")}));
}

void Tst_Translation::messagesHaveKoreanButtons() {
    QStringList captions;
    ModalAnswers answers;
    answers.add([&](QWidget *dialog) {
        for (QAbstractButton *button : dialog->findChild<QDialogButtonBox *>()->buttons())
            captions.append(button->text());
        captions.sort();
        static_cast<QDialog *>(dialog)->reject();
    });
    MessageDialog::information(nullptr, QStringLiteral("x"), QStringLiteral("x"),
                               MessageDialog::Ok | MessageDialog::Yes | MessageDialog::No |
                                   MessageDialog::Cancel | MessageDialog::Close | MessageDialog::Retry,
                               MessageDialog::Ok);
    QVERIFY(answers.isDone());
    QStringList expected{QStringLiteral("확인"), QStringLiteral("예(&Y)"), QStringLiteral("아니요(&N)"),
                         QStringLiteral("취소"), QStringLiteral("닫기"),   QStringLiteral("다시 시도")};
    expected.sort();
    QCOMPARE(captions, expected);
}

void Tst_Translation::dialogsOfTheToolkitSpeakKorean() {
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    QVERIFY2(QFile::exists(folder + QStringLiteral("/qtbase_ko.qm")), qPrintable(folder));
    QFileDialog dialog;
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    QStringList captions;
    for (QAbstractButton *button : dialog.findChild<QDialogButtonBox *>()->buttons())
        captions.append(button->text());
    captions.sort();
    QCOMPARE(captions, (QStringList{QStringLiteral("저장(&S)"), QStringLiteral("취소")}));

    QLineEdit line;
    const std::unique_ptr<QMenu> menu(line.createStandardContextMenu());
    QVERIFY(menu->actions().first()->text().startsWith(QStringLiteral("실행 취소(&U)")));
}

int main(int argc, char **argv) {
    qputenv("LC_ALL", "C.UTF-8");
    FakePlatform::install();
    Application application(argc, argv);
    Tst_Translation test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_translation.moc"

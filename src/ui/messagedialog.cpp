#include "ui/messagedialog.h"

#include "ui/snaptoscreen.h"
#include "ui/uistyler.h"
#include "ui/wrappinglabel.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHash>
#include <QLabel>
#include <QMap>
#include <QPointer>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <cmath>

namespace {

// Lengths at 96 per inch.
constexpr double DesignDpi = 96.0;
constexpr int SideMargin = 20;
constexpr int IconGap = 14;
constexpr int ButtonRowMargin = 12;
constexpr int CheckBoxGap = 16;
constexpr int ButtonPadding = 28;
constexpr int MinimumButtonWidth = 85;
constexpr int MinimumTextWidth = 220;
/// Beyond this a message is easier to read in two lines.
constexpr int MaximumTextWidth = 520;
/// What the fixed width adds to the scale, so that texts find room whatever the fonts round to.
constexpr double WidthReserve = 0.2;

/// A short message stands in a little more air than one that fills the window by itself.
const QMargins ShortTextMargins(0, 26, 20, 25);
const QMargins LongTextMargins(0, 22, 20, 20);
constexpr int ShortTextLines = 2;

constexpr MessageDialog::StandardButtons AllButtons[] = {
    MessageDialog::Ok,     MessageDialog::Save,           MessageDialog::SaveAll, MessageDialog::Open,
    MessageDialog::Yes,    MessageDialog::YesToAll,       MessageDialog::No,      MessageDialog::NoToAll,
    MessageDialog::Abort,  MessageDialog::Retry,          MessageDialog::Ignore,  MessageDialog::Close,
    MessageDialog::Cancel, MessageDialog::Discard,        MessageDialog::Help,    MessageDialog::Apply,
    MessageDialog::Reset,  MessageDialog::RestoreDefaults};

/// The answers that mean "leave it", the most harmless first.
constexpr MessageDialog::StandardButtons Refusals[] = {MessageDialog::Cancel, MessageDialog::No,
                                                       MessageDialog::Close, MessageDialog::Abort};

/// The captions by which the translation table knows the buttons. Themes of the desktop spell some of them
/// with mnemonics of their own, so the dialog gives its standard buttons these.
QString designCaption(MessageDialog::StandardButtons button) {
    switch (button) {
    case MessageDialog::Ok:
        return QStringLiteral("OK");
    case MessageDialog::Cancel:
        return QStringLiteral("Cancel");
    case MessageDialog::Yes:
        return QStringLiteral("&Yes");
    case MessageDialog::No:
        return QStringLiteral("&No");
    case MessageDialog::Close:
        return QStringLiteral("Close");
    default:
        return QString();
    }
}

const QMap<QString, QString> &translatedCaptions() {
    static const QMap<QString, QString> captions{
        {QStringLiteral("OK"), MessageDialog::tr("Ok")},
        {QStringLiteral("Cancel"), MessageDialog::tr("Cancel")},
        {QStringLiteral("&Yes"), MessageDialog::tr("Yes(&Y)")},
        {QStringLiteral("&No"), MessageDialog::tr("No(&N)")},
        {QStringLiteral("Close"), MessageDialog::tr("Close")},
    };
    return captions;
}

QString iconName(MessageDialog::Icon icon) {
    switch (icon) {
    case MessageDialog::Information:
        return QStringLiteral("Information");
    case MessageDialog::Warning:
        return QStringLiteral("Warning");
    case MessageDialog::Critical:
        return QStringLiteral("Critical");
    case MessageDialog::Question:
        return QStringLiteral("Question");
    case MessageDialog::Success:
        return QStringLiteral("Success");
    case MessageDialog::NoIcon:
        break;
    }
    return QStringLiteral("NoIcon");
}

void repolish(QWidget *widget) {
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

bool isAccepting(QDialogButtonBox::ButtonRole role) {
    return role == QDialogButtonBox::AcceptRole || role == QDialogButtonBox::YesRole;
}

WrappingLabel *makeTextLabel(const QString &objectName, QWidget *parent) {
    auto *label = new WrappingLabel(parent);
    label->setObjectName(objectName);
    return label;
}

} // namespace

class MessageDialog::Private {
public:
    explicit Private(MessageDialog *dialog);

    // The four steps of every layout pass.
    void setMarginsAndFonts();
    void translateButtons();
    void nameButtons();
    void computeSizes();
    void layOut();

    int scaled(int length) const { return int(length * uiScale); }
    int rejectResult() const;
    void setDefaultButton(QAbstractButton *button);

    MessageDialog *q;
    QLabel *icon;
    QVBoxLayout *textLayout;
    WrappingLabel *text;
    WrappingLabel *informativeText;
    QWidget *bottom;
    QHBoxLayout *cbLayout;
    QDialogButtonBox *btnBox;
    QCheckBox *checkBox = nullptr;

    QString message;
    QString detail;
    QHash<QAbstractButton *, int> results;
    QList<QAbstractButton *> buttons; ///< as they were added
    QAbstractButton *defaultButton = nullptr;
    bool hasCloseResult = false;
    int closeResult = NoButton;

    double baseWidth = -1;
    double baseHeight = -1;
    double uiScale;
    bool firstShow = true;
};

MessageDialog::Private::Private(MessageDialog *dialog)
    : q(dialog), icon(new QLabel(dialog)), textLayout(new QVBoxLayout),
      text(makeTextLabel(QStringLiteral("text_"), dialog)),
      informativeText(makeTextLabel(QStringLiteral("informativeText_"), dialog)), bottom(new QWidget(dialog)),
      cbLayout(new QHBoxLayout), btnBox(new QDialogButtonBox(bottom)),
      uiScale(dialog->logicalDpiX() / DesignDpi) {
    icon->setObjectName(QStringLiteral("icon_"));
    textLayout->setObjectName(QStringLiteral("textLayout_"));
    bottom->setObjectName(QStringLiteral("bottom_"));
    bottom->setAttribute(Qt::WA_StyledBackground);
    cbLayout->setObjectName(QStringLiteral("cbLayout_"));
    btnBox->setObjectName(QStringLiteral("btnBox_"));
    // Buttons stand in the order in which they are told, whatever desktop this is.
    btnBox->setStyleSheet(QStringLiteral("button-layout: 0"));
    informativeText->hide();
    icon->hide();

    auto *content = new QHBoxLayout;
    content->setObjectName(QStringLiteral("contentLayout_"));
    content->addWidget(icon, 0, Qt::AlignVCenter);
    content->addLayout(textLayout, 1);
    textLayout->addWidget(text);
    textLayout->addWidget(informativeText);

    auto *row = new QHBoxLayout(bottom);
    row->addLayout(cbLayout);
    row->addStretch(1);
    row->addWidget(btnBox);

    auto *all = new QVBoxLayout(dialog);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addLayout(content, 1);
    all->addWidget(bottom);
}

void MessageDialog::Private::setMarginsAndFonts() {
    const int side = scaled(SideMargin);
    auto *content = q->findChild<QHBoxLayout *>(QStringLiteral("contentLayout_"));
    content->setContentsMargins(side, 0, 0, 0);
    content->setSpacing(icon->isHidden() ? 0 : scaled(IconGap));
    const int rowMargin = scaled(ButtonRowMargin);
    bottom->layout()->setContentsMargins(side, rowMargin, side, rowMargin);
    bottom->layout()->setSpacing(scaled(CheckBoxGap));
    for (QWidget *widget : {static_cast<QWidget *>(text), static_cast<QWidget *>(informativeText), bottom})
        widget->ensurePolished();
}

void MessageDialog::Private::translateButtons() {
    for (QAbstractButton *button : qAsConst(buttons)) {
        const QString caption = translatedCaptions().value(button->text());
        if (!caption.isEmpty())
            button->setText(caption);
    }
}

void MessageDialog::Private::nameButtons() {
    for (QAbstractButton *button : qAsConst(buttons)) {
        button->setCursor(Qt::PointingHandCursor);
        const QString name = isAccepting(btnBox->buttonRole(button)) ? QStringLiteral("positiveButton")
                                                                     : QStringLiteral("negativeButton");
        if (button->objectName() == name)
            continue;
        button->setObjectName(name);
        repolish(button);
    }
}

void MessageDialog::Private::computeSizes() {
    const QString shown = detail.isEmpty() ? message : message + QLatin1Char('\n') + detail;
    const int lines = shown.split(QLatin1Char('\n')).size();
    const QMargins margins = lines > ShortTextLines ? LongTextMargins : ShortTextMargins;
    textLayout->setContentsMargins(scaled(margins.left()), scaled(margins.top()), scaled(margins.right()),
                                   scaled(margins.bottom()));
    textLayout->setSpacing(0);

    const int natural = qMax(WrappingLabel::naturalWidth(message, text->fontMetrics()),
                             WrappingLabel::naturalWidth(detail, informativeText->fontMetrics()));
    const int width = qBound(scaled(MinimumTextWidth), natural + 1, scaled(MaximumTextWidth));
    text->setWrappedText(message, width);
    informativeText->setWrappedText(detail, width);
    for (QAbstractButton *button : qAsConst(buttons)) {
        const QFontMetrics metrics(button->font());
        const int textWidth = metrics.size(Qt::TextShowMnemonic, button->text()).width();
        button->setMinimumWidth(qMax(scaled(MinimumButtonWidth), textWidth + scaled(ButtonPadding)));
    }
    q->adjustSize();
}

void MessageDialog::Private::layOut() {
    setMarginsAndFonts();
    translateButtons();
    nameButtons();
    computeSizes();
}

int MessageDialog::Private::rejectResult() const {
    if (hasCloseResult)
        return closeResult;
    const QList<int> values = results.values();
    for (StandardButtons refusal : Refusals) {
        if (values.contains(refusal))
            return refusal;
    }
    for (auto button = buttons.crbegin(); button != buttons.crend(); ++button) {
        if (!isAccepting(btnBox->buttonRole(*button)))
            return results.value(*button);
    }
    return buttons.size() == 1 ? results.value(buttons.first()) : int(NoButton);
}

void MessageDialog::Private::setDefaultButton(QAbstractButton *button) {
    defaultButton = button;
    if (auto *push = qobject_cast<QPushButton *>(button))
        push->setDefault(true);
}

MessageDialog::MessageDialog(QWidget *parent) : QDialog(parent), d(std::make_unique<Private>(this)) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setTitle(tr("Tindra"));
    connect(d->btnBox, &QDialogButtonBox::clicked, this,
            [this](QAbstractButton *button) { done(d->results.value(button, NoButton)); });
    UIStyler::setScaleCallback(this, [this](const double &scale) { onScaleChanged(scale); });
}

MessageDialog::~MessageDialog() = default;

void MessageDialog::setTitle(const QString &title) {
    setWindowTitle(title);
    setAccessibleName(title);
}

void MessageDialog::setText(const QString &text) {
    d->message = text;
    d->text->setText(text);
    d->text->setAccessibleName(text);
    setAccessibleDescription(text);
    if (!d->firstShow)
        d->layOut();
}

void MessageDialog::setInformativeText(const QString &text) {
    d->detail = text;
    d->informativeText->setText(text);
    d->informativeText->setAccessibleName(text);
    d->informativeText->setVisible(!text.isEmpty());
    if (!d->firstShow)
        d->layOut();
}

void MessageDialog::setIcon(Icon icon) {
    d->icon->setProperty("icon", iconName(icon));
    d->icon->setVisible(icon != NoIcon);
    repolish(d->icon);
}

void MessageDialog::setStandardButtons(int buttons, int defaultButton) {
    for (QAbstractButton *button : qAsConst(d->buttons))
        d->btnBox->removeButton(button);
    qDeleteAll(d->buttons);
    d->buttons.clear();
    d->results.clear();
    d->defaultButton = nullptr;
    for (StandardButtons value : AllButtons) {
        if (!(buttons & value))
            continue;
        QPushButton *button = d->btnBox->addButton(QDialogButtonBox::StandardButton(value));
        button->setIcon(QIcon());
        if (!designCaption(value).isEmpty())
            button->setText(designCaption(value));
        d->buttons.append(button);
        d->results.insert(button, value);
        if (value == defaultButton)
            d->setDefaultButton(button);
    }
}

QAbstractButton *MessageDialog::addButton(const QString &text, int result, ButtonKind kind, bool isDefault) {
    QPushButton *button = d->btnBox->addButton(text, kind == Positive ? QDialogButtonBox::AcceptRole
                                                                      : QDialogButtonBox::RejectRole);
    d->buttons.append(button);
    d->results.insert(button, result);
    if (isDefault)
        d->setDefaultButton(button);
    return button;
}

void MessageDialog::setCheckBox(const QString &text) {
    if (!d->checkBox) {
        d->checkBox = new QCheckBox(d->bottom);
        d->checkBox->setObjectName(QStringLiteral("checkBox_"));
        d->checkBox->setCursor(Qt::PointingHandCursor);
        d->cbLayout->addWidget(d->checkBox);
    }
    d->checkBox->setText(text);
}

bool MessageDialog::isCheckBoxChecked() const {
    return d->checkBox && d->checkBox->isChecked();
}

void MessageDialog::setCloseResult(int result) {
    d->hasCloseResult = true;
    d->closeResult = result;
}

void MessageDialog::reject() {
    done(d->rejectResult());
}

void MessageDialog::showEvent(QShowEvent *event) {
    QDialog::showEvent(event);
    if (!d->firstShow)
        return;
    d->firstShow = false;
    // Behind the buttons: their box sends a focus that comes from before it on to its first button.
    if (d->checkBox && !d->buttons.isEmpty())
        setTabOrder(d->buttons.last(), d->checkBox);
    if (!d->defaultButton) {
        for (QAbstractButton *button : qAsConst(d->buttons)) {
            if (isAccepting(d->btnBox->buttonRole(button))) {
                d->setDefaultButton(button);
                break;
            }
        }
    }
    if (d->defaultButton)
        d->defaultButton->setFocus();
    d->layOut();
    if (d->baseWidth < 0)
        d->baseWidth = std::ceil(width() / d->uiScale);
    if (d->baseHeight < 0)
        d->baseHeight = std::ceil(height() / d->uiScale);
}

void MessageDialog::onScaleChanged(double scale) {
    d->uiScale = scale;
    d->layOut();
    if (d->firstShow || d->baseWidth <= 0 || d->baseHeight <= 0 || scale <= 0)
        return;
    setFixedSize(int((scale + WidthReserve) * d->baseWidth), int(scale * d->baseHeight));
    snapToScreen(this);
}

namespace {

int run(QWidget *parent, MessageDialog::Icon icon, const QString &title, const QString &text, int buttons,
        int defaultButton) {
    // The parent may go while the dialog is open, and take it along.
    const QPointer<MessageDialog> dialog(new MessageDialog(parent));
    dialog->setTitle(title);
    dialog->setIcon(icon);
    dialog->setText(text);
    dialog->setStandardButtons(buttons, defaultButton);
    const int result = dialog->exec();
    if (!dialog)
        return MessageDialog::NoButton;
    delete dialog;
    return result;
}

} // namespace

int MessageDialog::information(QWidget *parent, const QString &title, const QString &text, int buttons,
                               int defaultButton) {
    return run(parent, Information, title, text, buttons, defaultButton);
}

int MessageDialog::warning(QWidget *parent, const QString &title, const QString &text, int buttons,
                           int defaultButton) {
    return run(parent, Warning, title, text, buttons, defaultButton);
}

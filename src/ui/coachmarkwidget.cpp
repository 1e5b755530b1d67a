#include "ui/coachmarkwidget.h"

#include "preferences/tindrapreferences.h"
#include "ui/stylecolors.h"
#include "ui/uistyler.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

namespace {

// Units at 96 DPI.
constexpr int TextPadding = 8; // left of, above and below the text
constexpr int CloseGap = 6;    // between the text and the close button
constexpr int CloseInset = 1;  // between the close button and the bubble's edge
constexpr int CloseSide = 16;
constexpr int ArrowLength = 8;
constexpr int ArrowHalfWidth = 6;
constexpr int CornerRadius = 4;

} // namespace

CoachmarkWidget::CoachmarkWidget(int preferenceId, QWidget *parent)
    : QWidget(parent), m_label(new QLabel(this)), m_close(new QPushButton(this)),
      m_preferenceId(preferenceId) {
    m_label->setObjectName(QStringLiteral("label"));
    m_label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_close->setObjectName(QStringLiteral("close_"));
    m_close->setCursor(Qt::PointingHandCursor);
    m_close->setAccessibleName(tr("Close"));
    setColor(StyleColors::instance().color(QStringLiteral("color13")));
    hide();
    connect(this, &CoachmarkWidget::updateText, this, &CoachmarkWidget::onChangedText);
    connect(m_close, &QPushButton::clicked, this, &CoachmarkWidget::onClose);
    UIStyler::setScaleCallback(this, [this](const double &scale) { onScale(scale); });
}

bool CoachmarkWidget::wasClosed() const {
    const auto *preferences = TindraPreferences::instance();
    return preferences && preferences->GetBool(m_preferenceId, false);
}

void CoachmarkWidget::setText(const QString &text) {
    m_label->setText(text);
    setAccessibleName(text);
    emit updateText();
}

QString CoachmarkWidget::text() const {
    return m_label->text();
}

void CoachmarkWidget::setAnchor(QWidget *anchor, Side side, double position) {
    m_anchor = anchor;
    m_arrowSide = side;
    m_arrowPosition = position;
    onChangedText();
}

void CoachmarkWidget::setColor(const QColor &color) {
    m_color = color;
    QPalette palette = m_label->palette();
    palette.setBrush(QPalette::Mid, color);
    m_label->setPalette(palette);
    update();
}

void CoachmarkWidget::onChangedText() {
    m_label->ensurePolished();
    const QSize textSize = m_label->fontMetrics()
                               .boundingRect(QRect(0, 0, QWIDGETSIZE_MAX, QWIDGETSIZE_MAX),
                                             Qt::AlignLeft | Qt::AlignTop, m_label->text())
                               .size();
    const int arrowLength = scaled(ArrowLength);
    const int side = scaled(CloseSide);
    QSize size(scaled(TextPadding) + textSize.width() + scaled(CloseGap) + side + scaled(CloseInset),
               qMax(textSize.height() + 2 * scaled(TextPadding), side + 2 * scaled(CloseInset)));
    size += isBeside() ? QSize(arrowLength, 0) : QSize(0, arrowLength);
    m_close->setFixedSize(side, side);
    resize(size);
    m_label->setGeometry(
        QRect(bubbleRect().topLeft() + QPoint(scaled(TextPadding), scaled(TextPadding)), textSize));
    place();
    update();
}

void CoachmarkWidget::place() {
    if (!m_anchor || !parentWidget())
        return;
    const QRect anchor(parentWidget()->mapFromGlobal(m_anchor->mapToGlobal(QPoint(0, 0))), m_anchor->size());
    const double centreX = anchor.x() + anchor.width() / 2.0;
    const double centreY = anchor.y() + anchor.height() / 2.0;
    const int alongX = int(centreX - m_arrowPosition * width() / 100);
    const int alongY = int(centreY - m_arrowPosition * height() / 100);
    switch (m_arrowSide) {
    case RightOfAnchor:
        move(anchor.x() + anchor.width(), alongY);
        break;
    case BelowAnchor:
        move(alongX, anchor.y() + anchor.height());
        break;
    case LeftOfAnchor:
        move(anchor.x() - width(), alongY);
        break;
    case AboveAnchor:
        move(alongX, anchor.y() - height());
        break;
    }
}

void CoachmarkWidget::onClose() {
    if (auto *preferences = TindraPreferences::instance())
        preferences->SetBool(m_preferenceId, true);
    hide();
    deleteLater();
}

void CoachmarkWidget::onScale(double scale) {
    m_scale = scale;
    onChangedText();
}

int CoachmarkWidget::scaled(int units) const {
    return int(units * m_scale);
}

QRect CoachmarkWidget::bubbleRect() const {
    const int length = scaled(ArrowLength);
    switch (m_arrowSide) {
    case RightOfAnchor:
        return rect().adjusted(length, 0, 0, 0);
    case BelowAnchor:
        return rect().adjusted(0, length, 0, 0);
    case LeftOfAnchor:
        return rect().adjusted(0, 0, -length, 0);
    case AboveAnchor:
        break;
    }
    return rect().adjusted(0, 0, 0, -length);
}

QPolygonF CoachmarkWidget::arrow() const {
    const QRectF bubble(bubbleRect());
    const double half = scaled(ArrowHalfWidth);
    const double length = scaled(ArrowLength);
    // At the very end of a side the arrow would hang over the rounded corner.
    const double room = half + scaled(CornerRadius);
    if (isBeside()) {
        const double y = qBound(room, m_arrowPosition * height() / 100, qMax(room, height() - room));
        const double base = m_arrowSide == RightOfAnchor ? bubble.left() : bubble.right();
        const double tip = m_arrowSide == RightOfAnchor ? base - length : base + length;
        return QPolygonF({{base, y - half}, {tip, y}, {base, y + half}});
    }
    const double x = qBound(room, m_arrowPosition * width() / 100, qMax(room, width() - room));
    const double base = m_arrowSide == BelowAnchor ? bubble.top() : bubble.bottom();
    const double tip = m_arrowSide == BelowAnchor ? base - length : base + length;
    return QPolygonF({{x - half, base}, {x, tip}, {x + half, base}});
}

void CoachmarkWidget::paintEvent(QPaintEvent *) {
    QPainterPath outline;
    outline.addRoundedRect(bubbleRect(), scaled(CornerRadius), scaled(CornerRadius));
    QPainterPath arrowPath;
    arrowPath.addPolygon(arrow());
    arrowPath.closeSubpath();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(outline.united(arrowPath), m_color);
}

void CoachmarkWidget::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    const QRect bubble = bubbleRect();
    const int inset = scaled(CloseInset);
    m_close->move(bubble.right() + 1 - inset - m_close->width(), bubble.top() + inset);
    place();
}

void CoachmarkWidget::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    onChangedText();
}

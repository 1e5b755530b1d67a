#include "preferences/dialog/menupushbutton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

// The style forgets the padding of a text beside a menu's arrow, so the text is drawn as if there were none.
void MenuPushButton::paintEvent(QPaintEvent *) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    option.features &= ~QStyleOptionButton::HasMenu;
    option.rect = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    painter.drawControl(QStyle::CE_PushButtonLabel, option);
}

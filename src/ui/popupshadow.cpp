#include "ui/popupshadow.h"

#include "platform/platform.h"

#include <QWidget>

void addPopupShadow(QWidget *popup) {
    if (!popup || !popup->windowHandle() || !Platform::instance().hasNativePopupShadow())
        return;
    Platform::instance().addPopupShadow(popup->windowHandle());
}

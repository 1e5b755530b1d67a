#include "ui/builtinstyle.h"

#include "platform/platform.h"
#include "ui/uistyler.h"

#include <QApplication>
#include <QFont>

namespace {

/// The sheets, the text tool and stored settings name these families, which few systems but one have. What
/// stands in must have Korean and Latin letters, or each text would mix two designs.
void substituteFamilies() {
    const QStringList substitutes{QStringLiteral("Noto Sans CJK KR"), QStringLiteral("NanumGothic")};
    for (const QString &family : {QStringLiteral("Malgun Gothic"), QStringLiteral("dotum")}) {
        if (QFont::substitutes(family).isEmpty())
            QFont::insertSubstitutions(family, substitutes);
    }
}

} // namespace

void installBuiltInStyle(QApplication *application) {
    substituteFamilies();
    UIStyler::install(application);
    UIStyler::setColorsIniPath(application, QStringLiteral(":/style/editor_variables.ini"));
    QStringList sheets{QStringLiteral(":/style/editor.qss")};
    if (!Platform::instance().hasNativePopupShadow())
        sheets.append(QStringLiteral(":/style/editor_non_dwm_shadows.qss"));
    UIStyler::setStyleSheetPaths(application, sheets);
}

#include "app/overflowmenu.h"

#include "app/tindraeditor.h"
#include "popups/popup.h"

#include <QStyle>

namespace {

QString entryOf(ShapeTypes::ShapeType shape) {
    switch (shape) {
    case ShapeTypes::Eraser:
        return QStringLiteral("eraser");
    case ShapeTypes::Mosaic:
        return QStringLiteral("mosaic");
    case ShapeTypes::Text:
        return QStringLiteral("text");
    case ShapeTypes::Crop:
        return QStringLiteral("crop");
    default:
        return {};
    }
}

} // namespace

OverflowMenu::OverflowMenu(QWidget *parent) : Menu(parent) {
    setObjectName(QStringLiteral("contextMenu_"));
}

QAction *OverflowMenu::addCopy(const QString &name, const QAction *original) {
    QAction *copy = addAction(original->text());
    copy->setObjectName(name);
    copy->setCheckable(true);
    copy->setMenu(original->menu());
    // A choice in a panel closes the panel's own menu only.
    if (const Popup *panel = Popup::findPopup(original->menu()))
        connect(panel, &Popup::triggered, this, &QWidget::hide);
    m_copies.insert(name, copy);
    return copy;
}

void OverflowMenu::setHasCopies(bool has) {
    const QVariant value = has ? QStringLiteral("true") : QStringLiteral("false");
    if (property("hasCopies") == value)
        return;
    setProperty("hasCopies", value);
    style()->unpolish(this);
    style()->polish(this);
}

void OverflowMenu::addCommands(TindraEditor *window) {
    m_print = addAction(tr("Print (&P)"), window, &TindraEditor::onClickPrint, Qt::CTRL | Qt::Key_P);
    // A key of a hidden menu is dead.
    window->addAction(m_print);
    addAction(tr("Online update (&U)"), window, &TindraEditor::onClickUpdate);
    addSeparator();
    QAction *preferences = addAction(
        tr("Preferences (&O)"), window, [window] { window->onClickPreference(); }, Qt::Key_F4);
    // A key of a menu works only where the menu's button is active; this one works in the whole window.
    window->addAction(preferences);
    addAction(tr("Close (&X)"), window, &TindraEditor::onClickClose);
}

void OverflowMenu::onEmptyEditor(bool isEmpty) {
    m_print->setDisabled(isEmpty);
}

void OverflowMenu::checkTool(const std::optional<ShapeTypes::ShapeType> &shape) {
    const QString current = shape ? entryOf(*shape) : QString();
    for (auto copy = m_copies.cbegin(); copy != m_copies.cend(); ++copy)
        copy.value()->setChecked(copy.key() == current);
}

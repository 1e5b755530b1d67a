#include "app/toolbar.h"

#include "preferences/tindrapreferences.h"

#include <QButtonGroup>
#include <QColor>
#include <QIcon>
#include <QShortcut>
#include <QToolButton>

namespace {

constexpr int IconSide = 32; // at 96 DPI

const auto captureName = QStringLiteral("capture");
const auto undoName = QStringLiteral("undo");
const auto redoName = QStringLiteral("redo");
const auto resetName = QStringLiteral("reset");

QIcon toolIcon(const QString &name) {
    QIcon icon(QStringLiteral(":/res/toolbar/%1.svg").arg(name));
    icon.addFile(QStringLiteral(":/res/toolbar/%1_disabled.svg").arg(name), {}, QIcon::Disabled);
    return icon;
}

QString toolOf(ShapeTypes::ShapeType shape) {
    switch (shape) {
    case ShapeTypes::Eraser:
        return QStringLiteral("eraser");
    case ShapeTypes::Pen:
        return QStringLiteral("pen");
    case ShapeTypes::Highlighter:
        return QStringLiteral("highlighter");
    case ShapeTypes::Mosaic:
        return QStringLiteral("mosaic");
    case ShapeTypes::Text:
    case ShapeTypes::TextEditing:
    case ShapeTypes::TextFinished:
        return QStringLiteral("text");
    case ShapeTypes::Crop:
        return QStringLiteral("crop");
    default:
        return QStringLiteral("figure");
    }
}

} // namespace

Toolbar::Toolbar(QWidget *parent) : QToolBar(parent), m_tools(new QButtonGroup(this)) {
    setObjectName(QStringLiteral("toolbar_"));
    setMovable(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setIconSize({IconSide, IconSide});
    // What does not fit has a menu of its own.
    if (auto *extension = findChild<QToolButton *>(QStringLiteral("qt_toolbar_ext_button")))
        extension->setFixedSize(0, 0);
    addFunctions();
    addTools();
}

QToolButton *Toolbar::addFunction(const QString &name, const QString &label, const QString &toolTip,
                                  const QKeySequence &shortcut) {
    auto *button = new QToolButton(this);
    button->setObjectName(name);
    button->setText(label);
    button->setToolTip(toolTip);
    button->setIcon(toolIcon(name));
    button->setIconSize(iconSize());
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    if (!shortcut.isEmpty()) {
        // Not the button's own shortcut, which works at most every 100 ms.
        const auto *key = new QShortcut(shortcut, button);
        connect(key, &QShortcut::activated, button, [button] { emit button->clicked(); });
    }
    addWidget(button);
    m_buttons.insert(name, button);
    return button;
}

QToolButton *Toolbar::addTool(const QString &name, const QString &label, const QString &toolTip) {
    QToolButton *button = addFunction(name, label, toolTip);
    button->setCheckable(true);
    m_tools->addButton(button);
    return button;
}

void Toolbar::addFunctions() {
    const QToolButton *capture = addFunction(captureName, tr("capture"), tr("Run new capture (Ctrl + N)"));
    addSeparator();
    const QToolButton *save =
        addFunction(QStringLiteral("save"), tr("save"), tr("Save current image (Ctrl + S)"));
    const QToolButton *copy = addFunction(QStringLiteral("copy"), tr("copy"),
                                          tr("Copy current image (Ctrl + C)"), Qt::CTRL | Qt::Key_C);
    const QToolButton *undo =
        addFunction(undoName, tr("undo"), tr("Undo last work (Ctrl + Z)"), Qt::CTRL | Qt::Key_Z);
    const QToolButton *redo =
        addFunction(redoName, tr("redo"), tr("Redo last work (Ctrl + Y)"), Qt::CTRL | Qt::Key_Y);
    const QToolButton *reset = addFunction(resetName, tr("reset"), tr("Reset all works"));
    addSeparator();

    connect(capture, &QToolButton::clicked, this, &Toolbar::captureClicked);
    connect(save, &QToolButton::clicked, this, &Toolbar::saveClicked);
    connect(copy, &QToolButton::clicked, this, &Toolbar::copyClicked);
    connect(undo, &QToolButton::clicked, this, &Toolbar::undoClicked);
    connect(redo, &QToolButton::clicked, this, &Toolbar::redoClicked);
    connect(reset, &QToolButton::clicked, this, &Toolbar::resetClicked);
}

void Toolbar::addTools() {
    const QToolButton *pen = addTool(QStringLiteral("pen"), tr("pen"), tr("Draw pen on current image"));
    const QToolButton *highlighter =
        addTool(QStringLiteral("highlighter"), tr("highlighter"), tr("Draw highlighter on current image"));
    addSeparator();
    const QToolButton *eraser = addTool(QStringLiteral("eraser"), tr("eraser"), tr("Erase drawn object"));

    // A tool acts at the press already.
    connect(pen, &QToolButton::pressed, this,
            [this] { emit penSelected(TindraPreferences::instance()->color(TindraPreferences::PenColor)); });
    connect(highlighter, &QToolButton::pressed, this, [this] {
        emit highlighterSelected(TindraPreferences::instance()->color(TindraPreferences::HighlighterColor));
    });
    connect(eraser, &QToolButton::clicked, this, &Toolbar::eraserClicked);
}

void Toolbar::showShape(ShapeTypes::ShapeType shape) {
    if (QToolButton *button = m_buttons.value(toolOf(shape))) {
        button->setChecked(true);
        return;
    }
    if (QAbstractButton *checked = m_tools->checkedButton()) {
        m_tools->setExclusive(false);
        checked->setChecked(false);
        m_tools->setExclusive(true);
    }
}

void Toolbar::onEmptyEditor(bool isEmpty) {
    for (QToolButton *button : qAsConst(m_buttons)) {
        if (button->objectName() != captureName)
            button->setDisabled(isEmpty);
    }
}

void Toolbar::onCanUndo(bool can) {
    m_buttons.value(undoName)->setEnabled(can);
    m_buttons.value(resetName)->setEnabled(can);
}

void Toolbar::onCanRedo(bool can) {
    m_buttons.value(redoName)->setEnabled(can);
}

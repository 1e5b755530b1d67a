#include "preferences/dialog/preferencesdialog.h"

#include "preferences/dialog/menupushbutton.h"
#include "ui/menu.h"
#include "ui/messagedialog.h"
#include "ui/named.h"
#include "ui/negativebutton.h"
#include "ui/positivebutton.h"
#include "ui/snaptoscreen.h"
#include "ui/uistyler.h"

#include <QAbstractSpinBox>
#include <QHBoxLayout>
#include <QListWidget>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

// Designed sizes, at 96 DPI.
constexpr QSize DialogSize(574, 492);
constexpr int Margin = 16;
constexpr int ButtonSpacing = 8;

} // namespace

PreferencesDialog::PreferencesDialog(QWidget *parent)
    : QDialog(parent), m_preferencesList(named(new QListWidget(this), "preferencesList_")),
      m_preferencesPages(named(new QStackedWidget(this), "preferencesPages_")) {
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(tr("Preferences"));
    m_preferencesList->setAccessibleName(windowTitle());
    setAttribute(Qt::WA_StyledBackground);
    setFixedSize(DialogSize);
    buildForm();
    m_general.setUseAutoSave(m_image.useAutoSave());
    m_image.setShowFileDlgAfterCapture(m_general.showFileDlgAfterCapture());
    const QList<QWidget *> descendants = findChildren<QWidget *>();
    for (QWidget *widget : descendants) {
        if (qobject_cast<QAbstractButton *>(widget) || qobject_cast<QAbstractSpinBox *>(widget))
            widget->setCursor(Qt::PointingHandCursor);
    }
    connect(m_preferencesList, &QListWidget::itemSelectionChanged, this,
            &PreferencesDialog::onItemSelectionChanged);
    UIStyler::setScaleCallback(this, [this](double) { snapToScreen(this); });
    selectPage(0);
    m_preferencesList->setFocus();
}

PreferencesDialog::~PreferencesDialog() = default;

void PreferencesDialog::buildForm() {
    addPages();
    auto *content = new QHBoxLayout;
    content->setSpacing(Margin);
    content->addWidget(m_preferencesList);
    content->addWidget(m_preferencesPages, 1);
    auto *form = new QVBoxLayout(this);
    form->setContentsMargins(Margin, Margin, Margin, Margin);
    form->setSpacing(Margin);
    form->addLayout(content, 1);
    form->addWidget(buildButtons());
}

void PreferencesDialog::addPages() {
    m_preferencesList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_preferencesList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_preferencesList->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const auto add = [this](PreferencesPage *page, const QString &text, const QString &picture) {
        m_preferencesPages->addWidget(page);
        QIcon icon(picture);
        // The style would tint the selected one, as if it were half disabled.
        icon.addFile(picture, QSize(), QIcon::Selected);
        m_pages.append({page, new QListWidgetItem(icon, text, m_preferencesList)});
    };
    add(&m_general, tr("General"), QStringLiteral(":/res/preferences/general.svg"));
    add(&m_image, tr("Capture"), QStringLiteral(":/res/preferences/image.svg"));
    add(&m_shortcut, tr("Shortcut"), QStringLiteral(":/res/preferences/shortcut.svg"));
    add(&m_history, tr("History"), QStringLiteral(":/res/preferences/history.svg"));
}

QWidget *PreferencesDialog::buildButtons() {
    auto *row = new QWidget(this);
    auto *defaults = named(new MenuPushButton(tr("default"), row), "default_");
    auto *menu = new Menu(defaults);
    menu->addAction(tr("set default this page"), this, &PreferencesDialog::onSetDefaultThisPage);
    menu->addAction(tr("set default all pages"), this, &PreferencesDialog::onSetDefaultAllPages);
    defaults->setMenu(menu);
    auto *ok = named(new PositiveButton(tr("ok"), row), "ok_");
    ok->setDefault(true);
    auto *cancel = named(new NegativeButton(tr("cancel"), row), "cancel_");
    connect(ok, &QPushButton::clicked, this, &PreferencesDialog::onOK);
    connect(cancel, &QPushButton::clicked, this, &PreferencesDialog::onCancel);
    auto *buttons = new QHBoxLayout(row);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(ButtonSpacing);
    buttons->addWidget(defaults);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    return row;
}

void PreferencesDialog::loadAll() {
    for (const Page &page : qAsConst(m_pages))
        page.widget->load();
}

void PreferencesDialog::selectPage(int index) {
    const bool isKnown = index >= 0 && index < m_pages.size();
    m_preferencesList->setCurrentItem(m_pages[isKnown ? index : 0].item);
}

PreferencesPage *PreferencesDialog::selectedPage() const {
    for (const Page &page : m_pages) {
        if (page.item->isSelected())
            return page.widget;
    }
    return nullptr;
}

void PreferencesDialog::onItemSelectionChanged() {
    if (PreferencesPage *page = selectedPage())
        m_preferencesPages->setCurrentWidget(page);
    else if (QListWidgetItem *current = m_preferencesList->currentItem())
        current->setSelected(true); // a click with Ctrl took it away, and "this page" needs one
}

void PreferencesDialog::onOK() {
    for (const Page &page : qAsConst(m_pages))
        page.widget->save();
    done(Accepted);
}

void PreferencesDialog::onCancel() {
    done(Rejected);
}

void PreferencesDialog::onSetDefaultThisPage() {
    if (!confirms(tr("Set this page to default.\nWould you like to continue?")))
        return;
    if (PreferencesPage *page = selectedPage())
        page->setDefaults();
}

void PreferencesDialog::onSetDefaultAllPages() {
    if (!confirms(tr("Set all pages to default.\nWould you like to continue?")))
        return;
    for (const Page &page : qAsConst(m_pages))
        page.widget->setDefaults();
}

bool PreferencesDialog::confirms(const QString &question) {
    return MessageDialog::information(this, tr("Tindra"), question, MessageDialog::Yes | MessageDialog::No) ==
           MessageDialog::Yes;
}

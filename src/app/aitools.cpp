#include "app/aitools.h"

#include "app/managementprogramoffer.h"
#include "app/pluginimage.h"
#include "canvas/editor.h"
#include "canvas/editorview.h"
#include "canvas/flagguard.h"
#include "output/imagewriter.h"
#include "platform/platform.h"
#include "services/pluginhost.h"
#include "ui/menu.h"
#include "ui/messagedialog.h"

#include <QApplication>
#include <QDateTime>

#include <optional>

namespace {

bool arePluginsAvailable() {
    return Platform::instance().canHostPlugins() && !PluginHost::instance().pluginIds().isEmpty();
}

bool writePicture(const EditorView *view, const QString &path) {
    Editor *editor = view->editor();
    const QPixmap picture = editor ? editor->flatten(true, false) : QPixmap();
    // Like a pin, it shows what others must not see.
    return !picture.isNull() && writePinImage(picture.toImage(), path);
}

} // namespace

AiTools::AiTools(QWidget *window)
    : QObject(window), m_window(window), m_menu(new Menu(window)),
      m_clock(&QDateTime::currentMSecsSinceEpoch) {
    PluginHost::instance().start(QStringLiteral("tindra"), QStringLiteral("ko-kr"));
    m_isAvailable = arePluginsAvailable();
    m_menu->setObjectName(QStringLiteral("aitoolsMenu_"));
    connect(m_menu, &QMenu::aboutToShow, this, &AiTools::rebuildMenu);
}

void AiTools::rebuildMenu() {
    // A host that is at work must not be asked.
    if (m_isRunning)
        return;
    m_menu->clear();
    PluginHost &host = PluginHost::instance();
    const QStringList ids = host.pluginIds();
    for (const QString &id : ids) {
        // What stands behind a tab would be shown as a shortcut, and no key does it.
        const QString name = host.pluginName(id).section(QLatin1Char('\t'), 0, 0);
        // Better a technical name than an entry without any.
        m_menu->addAction(name.isEmpty() ? id : name, this, [this, id] { emit chosen(id); });
    }
}

void AiTools::run(const QString &pluginId, const EditorView *view) {
    const QString path = m_isRunning ? QString() : makePluginImagePath(pluginId, m_clock());
    if (path.isEmpty())
        return;
    const FlagGuard guard(m_isRunning);
    std::optional<unsigned> result;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QCoreApplication::processEvents();
    // What was treated then may have ended the program, which has cleared up behind itself.
    if (!m_hasLeft && writePicture(view, path))
        result = PluginHost::instance().execute(pluginId, {path});
    QApplication::restoreOverrideCursor();
    QCoreApplication::processEvents();
    if (result && !m_hasLeft)
        report(*result);
}

void AiTools::report(unsigned result) const {
    const auto tell = [this](MessageDialog::Icon icon, const QString &text) {
        MessageDialog dialog(m_window);
        dialog.setTitle(tr("Tindra"));
        dialog.setIcon(icon);
        dialog.setText(text);
        dialog.setStandardButtons(MessageDialog::Ok);
        dialog.exec();
    };
    switch (result) {
    case PluginHost::Done:
        break;
    case PluginHost::HostUpdating:
        tell(MessageDialog::Information,
             tr("Updating Brindlehub (the management program of Brindle).\nPlease try again later."));
        break;
    case PluginHost::HostMissing:
        ManagementProgramOffer::make(
            m_window, tr("The AI features require Brindlehub (the management program of Brindle).\n"
                         "Would you like to install Brindlehub now?"));
        break;
    default:
        tell(MessageDialog::Critical,
             tr("An unexpected error occurred. Reinstalling the program may fix this problem. If the issue "
                "continues, please contact customer support."));
        break;
    }
}

#include "app/programinformation.h"

#include "app/translation.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char *const helpOption = "--help";
const char *const versionOption = "--version";

bool isOption(const char *argument, const char *option) {
    return std::strcmp(argument, option) == 0;
}

} // namespace

bool ProgramInformation::isCall(int argc, char **argv) {
    return argc == 2 && (isOption(argv[1], helpOption) || isOption(argv[1], versionOption));
}

int ProgramInformation::run(int argc, char **argv) {
    const bool wantsHelp = isOption(argv[1], helpOption);
    QCoreApplication application(argc, argv);
    installProgramTranslation();
    const QByteArray text = (wantsHelp ? help() : version()).toUtf8();
    const bool isWritten = std::fputs(text.constData(), stdout) >= 0 && std::fflush(stdout) == 0;
    return isWritten ? EXIT_SUCCESS : EXIT_FAILURE;
}

QString ProgramInformation::help() {
    return tr("Usage: tindra-editor [COMMAND ...]\n"
              "\n"
              "The image editor of Norvane's screen capture. One editor runs per user: a\n"
              "further start hands its commands to the first and ends. Without a command it\n"
              "waits in the background.\n"
              "\n"
              "  /path FILE      add a picture; the file becomes the editor's, who deletes it\n"
              "  /point X Y      with /path: position of the picture on the screen\n"
              "  /memory SIZE    with /path: the picture is in shared memory, so many bytes\n"
              "  /skip           with /path: do not show the window\n"
              "                  with /autosave: do not tell the result\n"
              "  /show           show the window\n"
              "  /hide           hide the window\n"
              "  /save           save the current picture\n"
              "  /autosave       save the current picture without asking for a name\n"
              "  /preference PAGE\n"
              "                  open the preferences on this page, 0 to 3\n"
              "  /updateprefvalue ID VALUE\n"
              "                  switch a preference on (1) or off (0)\n"
              "  /about          show what program this is\n"
              "  /close          end the editor, asking about pictures that are not saved\n"
              "  /kill           end it at once; the next start brings the pictures back\n"
              "\n"
              "  --help          alone: show this text\n"
              "  --version       alone: show the version\n"
              "\n"
              "tindra-send --open FILE opens a copy of a picture and leaves the file alone.\n");
}

QString ProgramInformation::version() {
    return QStringLiteral("Tindra " TINDRA_VERSION "\n");
}

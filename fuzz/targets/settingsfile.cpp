// The settings file as anybody may have left it, and a text to store in it: text, zero byte, file.

#include "fuzz/support/input.h"
#include "fuzz/support/scratchfolder.h"
#include "preferences/tindrapreferences.h"

#include <QCoreApplication>

namespace {

/// All that the settings hold, as one can ask for it.
struct Snapshot {
    QVector<int> types;
    QVector<int> numbers;
    QStringList texts;
    QList<QSize> sizes;
    QList<QColor> colors;

    bool operator==(const Snapshot &other) const {
        return types == other.types && numbers == other.numbers && texts == other.texts &&
               sizes == other.sizes && colors == other.colors;
    }
};

Snapshot loaded() {
    TindraPreferences::resetForTesting();
    TindraPreferences *preferences = TindraPreferences::instance();
    require(preferences->Init(), "settings can be read whatever the file holds");
    Snapshot snapshot;
    for (int id = 0; id < TindraPreferences::ItemCount; ++id) {
        snapshot.types.append(preferences->Type(id));
        snapshot.numbers.append(preferences->GetInt(id, preferences->GetBool(id, false) ? 1 : 0));
        snapshot.texts.append(preferences->GetString(id, QString()));
    }
    preferences->GetSizePresets(snapshot.sizes);
    for (const QString &key :
         {TindraPreferences::FigureFillCustomColorKey(), TindraPreferences::FigureLineCustomColorKey(),
          TindraPreferences::PenCustomColorKey(), TindraPreferences::HighlighterCustomColorKey(),
          TindraPreferences::TextCustomColorKey()})
        preferences->GetCustomColors(key, snapshot.colors);
    return snapshot;
}

Snapshot withoutFile() {
    const ScratchFolder folder;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));
    return loaded();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const Snapshot defaults = withoutFile();
    const ScratchFolder folder;
    Input input(data, size);
    const QString text = QString::fromUtf8(input.until(0));
    const QString file = folder.write(QStringLiteral("Norvane/Tindra.conf"), input.rest());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.path()));

    Snapshot snapshot = loaded();
    require(snapshot.types == defaults.types, "a file changes values, but no item's type");

    TindraPreferences::instance()->SetString(TindraPreferences::FilePath, text);
    snapshot.texts[TindraPreferences::FilePath] = text;
    TindraPreferences::instance()->SaveAll();
    require(loaded() == snapshot, "what was saved is loaded again");

    const QByteArray saved = contentOf(file);
    TindraPreferences::instance()->SaveAll();
    require(contentOf(file) == saved, "saving what is stored already changes nothing");
    return 0;
}

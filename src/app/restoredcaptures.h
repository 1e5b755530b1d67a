#pragma once

#include <QCoreApplication>
#include <QStringList>

#include <functional>

class HistoryWidget;
class QWidget;

/// The captures of the last run: those that were pinned, and those that an end other than an exit left in the
/// work folder. GUI thread only.
class RestoredCaptures {
    Q_DECLARE_TR_FUNCTIONS(RestoredCaptures)
public:
    /// Puts the capture of that file into the list, above those that are not pinned; false when it cannot be
    /// read.
    using Add = std::function<bool(const QString &path)>;

    /// `history` outlives this.
    RestoredCaptures(HistoryWidget *history, Add add);

    /// Puts all that fit into the list and leaves the selected one selected; whether none was unreadable.
    bool bringBack();
    /// Selects the capture if it is a left-over that no line has named yet. A second row would share its
    /// file, and the first of them to be deleted would take it from the other.
    bool select(const QString &path);
    /// Tells the user, once, that captures are back.
    void tell(QWidget *parent);

private:
    bool add(const QStringList &paths);

    HistoryWidget *m_history;
    Add m_add;
    QStringList m_leftOvers; ///< files that no line has named yet
    bool m_isToBeTold = false;
};

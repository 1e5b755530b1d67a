#include "history/history.h"

namespace {
const int metaTypeId = qRegisterMetaType<History>("History");
}

History::History(Editor *editor) : m_editor(editor) {
    Q_UNUSED(metaTypeId)
}

History::History(const History &other)
    : QObject(), m_editor(other.m_editor), m_number(other.m_number), m_flag(other.m_flag) {}

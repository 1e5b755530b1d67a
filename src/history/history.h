#pragma once

#include <QMetaType>
#include <QObject>

class Editor;

/// The record behind one row of the recent captures: a value that points at the capture's live scene.
/// Copies share the pointer and never own it.
class History : public QObject {
    Q_OBJECT
public:
    explicit History(Editor *editor = nullptr);
    History(const History &other);

    Editor *editor() const { return m_editor; }

private:
    Editor *m_editor = nullptr;
    // Belong to a record and go along with its copies. Nothing gives them another value yet.
    int m_number = 0;
    bool m_flag = false;
};

Q_DECLARE_METATYPE(History)

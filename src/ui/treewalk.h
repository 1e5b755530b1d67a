#pragma once

#include <QObject>
#include <QQueue>

/// Visits `root` and, breadth first, the direct children of type `T` of every object for which `visit`
/// returned true.
template <typename T, typename Visit> void walkTree(T *root, Visit visit) {
    QQueue<T *> open;
    open.enqueue(root);
    while (!open.isEmpty()) {
        T *object = open.dequeue();
        if (!visit(object))
            continue;
        const QList<T *> children = object->template findChildren<T *>(QString(), Qt::FindDirectChildrenOnly);
        for (T *child : children)
            open.enqueue(child);
    }
}

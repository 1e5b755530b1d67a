#pragma once

#include <QWidget>

/// The title of a group of options, with a line from it to the page's right edge.
class SectionTitle : public QWidget {
    Q_OBJECT
public:
    explicit SectionTitle(const QString &text, QWidget *parent = nullptr);
};

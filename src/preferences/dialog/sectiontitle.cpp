#include "preferences/dialog/sectiontitle.h"

#include "preferences/dialog/formparts.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

SectionTitle::SectionTitle(const QString &text, QWidget *parent) : QWidget(parent) {
    auto *line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(FormParts::FieldSpacing);
    row->addWidget(new QLabel(text, this));
    row->addWidget(line, 1);
}

#include "output/confirmdeletedialog.h"

namespace {

QString question(ConfirmDeleteDialog::Type type) {
    switch (type) {
    case ConfirmDeleteDialog::OneImage:
        return ConfirmDeleteDialog::tr("Would you delete image?");
    case ConfirmDeleteDialog::SelectedImages:
        return ConfirmDeleteDialog::tr("Would you delete selected images?");
    case ConfirmDeleteDialog::AllImages:
        break;
    }
    return ConfirmDeleteDialog::tr("Would you clear history?");
}

QString consequence(ConfirmDeleteDialog::Type type) {
    switch (type) {
    case ConfirmDeleteDialog::OneImage:
        return ConfirmDeleteDialog::tr("Cannot be recovered image has been deleted.");
    case ConfirmDeleteDialog::SelectedImages:
        return ConfirmDeleteDialog::tr("It will erase selected images.");
    case ConfirmDeleteDialog::AllImages:
        break;
    }
    return ConfirmDeleteDialog::tr("It will erase all captured images.");
}

} // namespace

ConfirmDeleteDialog::ConfirmDeleteDialog(Type type, QWidget *parent) : MessageDialog(parent) {
    setTitle(tr("Tindra"));
    setIcon(Question);
    setText(question(type));
    setInformativeText(consequence(type));
    setCheckBox(tr("Skip"));
    addButton(tr("&Yes"), Delete, Positive, true);
    if (type == OneImage)
        addButton(tr("Discard after save"), SaveFirst, Positive);
    addButton(tr("&No"), Keep, Negative);
    setCloseResult(Dismissed);
}

bool ConfirmDeleteDialog::isSkipChecked() const {
    return isCheckBoxChecked();
}

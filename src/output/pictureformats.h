#pragma once

#include <QtGlobal>

/// A format in which pictures are saved.
struct PictureFormat {
    const char *suffix;     ///< of its files, lower case
    const char *name;       ///< in lists of formats
    const char *usageEvent; ///< recorded for a save in it
};

/// In the order in which the setting `FileFormat` counts them, as do the lists of formats.
inline constexpr PictureFormat PictureFormats[] = {{"png", "PNG", "capt_1_011"},
                                                   {"jpg", "JPG", "capt_1_012"},
                                                   {"bmp", "BMP", "capt_1_013"},
                                                   {"gif", "GIF", "capt_1_014"},
                                                   {"webp", "WEBP", "cap_302_01"}};

/// The entries of the file dialog in the same order: one text, in the context of the panel that shows it, so
/// that a translation keeps them together.
inline constexpr char PictureFilters[] = QT_TRANSLATE_NOOP(
    "HistoryWidget",
    "png file (*.png);;jpg file (*.jpg);;bmp file (*.bmp);;gif file (*.gif);;webp file (*.webp)");

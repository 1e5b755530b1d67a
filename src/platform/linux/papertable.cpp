#include "platform/linux/papertable.h"

#include <algorithm>
#include <iterator>

namespace {

struct Row {
    const char *standardName;
    quint16 id;
    const char *name;
};

// Settings hold these ids, so they stay as they are.
constexpr Row Rows[] = {
    {"na_letter_8.5x11in", 1, "Letter"},
    {"na_ledger_11x17in", 3, "Tabloid"},
    {"na_legal_8.5x14in", 5, "Legal"},
    {"na_invoice_5.5x8.5in", 6, "Statement"},
    {"na_executive_7.25x10.5in", 7, "Executive"},
    {"iso_a3_297x420mm", 8, "A3"},
    {"iso_a4_210x297mm", 9, "A4"},
    {"iso_a5_148x210mm", 11, "A5"},
    {"jis_b4_257x364mm", 12, "B4 (JIS)"},
    {"jis_b5_182x257mm", 13, "B5 (JIS)"},
    {"om_folio_210x330mm", 14, "Folio"},
    {"na_quarto_8.5x10.83in", 15, "Quarto"},
    {"na_10x14_10x14in", 16, "10x14"},
    {"na_number-9_3.875x8.875in", 19, "Envelope #9"},
    {"na_number-10_4.125x9.5in", 20, "Envelope #10"},
    {"na_number-11_4.5x10.375in", 21, "Envelope #11"},
    {"na_number-12_4.75x11in", 22, "Envelope #12"},
    {"na_number-14_5x11.5in", 23, "Envelope #14"},
    {"iso_dl_110x220mm", 27, "Envelope DL"},
    {"iso_c5_162x229mm", 28, "Envelope C5"},
    {"iso_c3_324x458mm", 29, "Envelope C3"},
    {"iso_c4_229x324mm", 30, "Envelope C4"},
    {"iso_c6_114x162mm", 31, "Envelope C6"},
    {"iso_c6c5_114x229mm", 32, "Envelope C65"},
    {"iso_b4_250x353mm", 33, "Envelope B4"},
    {"iso_b5_176x250mm", 34, "Envelope B5"},
    {"iso_b6_125x176mm", 35, "Envelope B6"},
    {"na_monarch_3.875x7.5in", 37, "Envelope Monarch"},
    {"na_personal_3.625x6.5in", 38, "Envelope Personal"},
    {"jpn_hagaki_100x148mm", 43, "Postcard"},
    {"iso_a2_420x594mm", 66, "A2"},
    {"iso_a6_105x148mm", 70, "A6"},
};

} // namespace

KnownPaper knownPaper(const QString &standardName) {
    const auto *found = std::find_if(std::begin(Rows), std::end(Rows), [&standardName](const Row &row) {
        return standardName == QLatin1String(row.standardName);
    });
    if (found == std::end(Rows))
        return {0, QString()};
    return {found->id, QString::fromLatin1(found->name)};
}

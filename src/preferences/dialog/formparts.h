#pragma once

/// What the pages of the preferences have in common in their forms. Lengths are at 96 per inch.
namespace FormParts {

constexpr int RowSpacing = 8;
constexpr int FieldSpacing = 8; // between a label and its field, and between two fields

} // namespace FormParts

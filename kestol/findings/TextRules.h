#pragma once

namespace kestol {

class Inspection;
struct RecordFields;

// Rules that look at the words of one record.

void FindSplitNumbers(Inspection& deck, const RecordFields& record);  // node-number
void FindCutNumbers(Inspection& deck, const RecordFields& record);    // number-cut
void FindEmptyValues(Inspection& deck, const RecordFields& record);   // empty-value
void FindUnknownKeys(Inspection& deck, const RecordFields& record);   // unknown-word
void FindKeyPrefixes(Inspection& deck, const RecordFields& record);   // key-prefix
void FindSupportCodes(Inspection& deck, const RecordFields& record);  // support-code
void FindSurplus(Inspection& deck, const RecordFields& record);       // surplus
void FindDegrees(Inspection& deck, const RecordFields& record);       // degrees

/// A column that no node needs is one mistake.
void FindSurplusColumns(Inspection& deck);  // surplus

void FindDoubleSystems(Inspection& deck, const RecordFields& record);  // duplicate-number
void FindGravityLength(Inspection& deck, const RecordFields& record);  // gravity

/// Keeps the lines of supports and nodal loads, for the rules that compare them.
void KeepNodeLines(Inspection& deck, const RecordFields& record);

/// Keeps what a definition says, for the rules that look at values.
void KeepWrittenValues(Inspection& deck, const RecordFields& record);

}  // namespace kestol

#include "kestol/findings/Catalogue.h"

#include "kestol/findings/Inspection.h"
#include "kestol/findings/ModelRules.h"
#include "kestol/findings/ReaderRules.h"
#include "kestol/findings/SolutionRules.h"
#include "kestol/findings/TextRules.h"

namespace kestol {

namespace {

constexpr Severity E = Severity::Error, W = Severity::Warning;
using enum Stage;

// What is found first keeps others from saying the same: the order counts.
// clang-format off
constexpr Rule kRules[] = {
    // the words of each record
    {"node-number",      E, Text, nullptr, FindSplitNumbers,
     "a node or element number that is not a whole number"},
    {"empty-value",      E, Text, nullptr, FindEmptyValues,
     "key = value with blanks on both sides, where only one side is read"},
    {"number-cut",       E, Text, nullptr, FindCutNumbers,
     "a number of which only the beginning is read"},
    {"unknown-word",     E, Text, nullptr, FindUnknownKeys,
     "a keyword or key that is not known"},
    {"key-prefix",       E, Text, nullptr, FindKeyPrefixes,
     "a material key that is taken by its beginning"},
    {"support-code",     E, Text, nullptr, FindSupportCodes,
     "a support code other than 0, 1 and 2"},
    {"surplus",          W, Text, nullptr, FindSurplus,
     "values behind the last one of a record, which nothing reads"},
    {"surplus",          W, Reading, FindSurplusColumns, nullptr, ""},
    {"duplicate-number", W, Text, nullptr, FindDoubleSystems, ""},
    {"degrees",          W, Text, nullptr, FindDegrees,
     "an Euler angle beyond 2 pi: angles are in radians"},
    {"gravity",          W, Text, nullptr, FindGravityLength,
     "a gravity direction whose length, or whole, has no effect"},
    // what the reader noted
    {"syntax",           E, Reading, FindRefusals, nullptr,
     "what the reader of the deck refuses, in its words"},
    {"missing-end",      E, Never, nullptr, nullptr,
     "a section that is not closed and swallows what follows"},
    {"keyword-in-text",  W, Never, nullptr, nullptr,
     "a word of a title or comment that is taken as a keyword"},
    {"duplicate-number", E, Reading, FindDuplicateNumbers, nullptr,
     "a number that is given twice in a list"},
    {"number-gap",       E, Reading, FindNumberGaps, nullptr,
     "node numbers that are not 1, 2, 3 ... N"},
    {"unknown-node",     E, Reading, FindUnknownNodes, nullptr,
     "a reference to a node that does not exist"},
    {"unknown-element",  E, Reading, FindUnknownElements, nullptr,
     "a load on an element that does not exist"},
    {"unknown-material", E, Reading, FindUnknownMaterials, nullptr,
     "an element whose material does not exist"},
    {"units-order",      W, Reading, FindUnitsOrder, nullptr,
     "a units keyword behind the values that it should scale"},
    {"units-default",    W, Reading, FindMissingUnits, nullptr,
     "unit systems are named, but a units keyword is missing"},
    {"replaced-support", W, Reading, FindReplacedSupports, nullptr,
     "a support line that replaces a code or value of an earlier one"},
    {"value-without-code", W, Reading, FindValuesWithoutCode, nullptr,
     "a value on a degree of freedom whose code is 0"},
    {"duplicate-load",   W, Reading, FindDuplicateLoads, nullptr,
     "a second load on the same node or face"},
    {"load-on-fixed",    W, Reading, FindLoadsOnFixed, nullptr,
     "a nodal load on a prescribed degree: it appears nowhere"},
    {"spring",           W, Reading, FindSprings, nullptr,
     "a spring that is zero, negative, or far stiffer than the model"},
    // the model
    {"missing-property", E, Model, FindMissingProperties, nullptr,
     "an element whose material lacks what its family needs"},
    {"bad-material",     E, Model, FindBadMaterials, nullptr,
     "a material value that cannot be, or that does not fit the others"},
    {"magnitude",        W, Model, FindMagnitudes, nullptr,
     "a property far from anything built in its units"},
    {"zero-size",        E, Model, FindZeroSizes, nullptr,
     "an element without length, area or volume"},
    {"opposite-normals", E, Model, FindOppositeNormals, nullptr,
     "neighbouring shells whose normals disagree"},
    {"model",            E, Model, FindModelRefusals, nullptr,
     "what the solver refuses after reading, in its words"},
    {"bad-shape",        W, Model, FindBadShapes, nullptr,
     "an aspect above 20 or an angle below 10 degrees"},
    {"orphan-node",      E, Model, FindOrphanNodes, nullptr,
     "a node without elements that nothing holds"},
    {"unused",           W, Model, FindUnusedMaterials, nullptr,
     "a material that no element has, or a held node without elements"},
    {"unused",           W, Model, FindUnusedNodes, nullptr, ""},
    {"coincident-nodes", W, Model, FindCoincidentNodes, nullptr,
     "nodes at one place that no element joins"},
    {"crossing-members", W, Model, FindCrossingMembers, nullptr,
     "beams that cross, or a node on a beam, without a common node"},
    {"disconnected",     W, Model, FindParts, nullptr,
     "parts of the model that share no node"},
    {"no-loads",         W, Model, FindNoLoads, nullptr,
     "neither loads, weight nor settlements"},
    {"gravity",          W, Model, FindGravity, nullptr, ""},
    {"no-effect-load",   W, Model, FindNoEffectLoads, nullptr,
     "a projected load on an element without size across it"},
    {"hinge-first",      W, Model, FindFirstHinges, nullptr,
     "a loaded beam that is hinged at its first node"},
    {"hinge-shared",     W, Model, FindSharedHinges, nullptr,
     "a hinge where three or more beams meet"},
    {"corner-diagonal",  W, Model, FindCornerDiagonals, nullptr,
     "an inner edge between supports, whose mid-side becomes one"},
    {"cost",             W, Model, FindCosts, nullptr,
     "output above 1 GB, or a SkyLine matrix above 4 GB"},
    // the stiffness
    {"rigid-motion",     E, Assembled, FindRigid, nullptr,
     "supports that leave the model, or a part of it, a rigid motion"},
    {"mechanism",        E, Assembled, FindMechanism, nullptr,
     "any other motion that nothing resists"},
    {"spring",           W, Assembled, FindStiffSprings, nullptr, ""},
    // the solution
    {"ill-conditioned",  W, Solved, FindIllConditioning, nullptr,
     "fewer than 4 digits of the results are sound"},
    {"large-displacement", W, Solved, FindLargeDisplacements, nullptr,
     "displacements above a tenth of the model's size"},
    {"out-of-balance",   E, Solved, FindImbalance, nullptr,
     "loads and true reactions that differ"},
    {"stiff-element",    W, Solved, FindStiffElements, nullptr,
     "elements that are too stiff in bending"},
};
// clang-format on

}  // namespace

std::span<const Rule> Rules() {
  return kRules;
}

}  // namespace kestol

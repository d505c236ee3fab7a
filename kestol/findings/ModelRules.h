#pragma once

namespace kestol {

class Inspection;

// Rules that look at the model as it was read. Records that are spoilt, and what depends on them,
// are left out.

// materials
void FindMissingProperties(Inspection& deck);  // missing-property
void FindBadMaterials(Inspection& deck);       // bad-material
void FindMagnitudes(Inspection& deck);         // magnitude
void FindUnusedMaterials(Inspection& deck);    // unused

// units
void FindUnitsOrder(Inspection& deck);    // units-order
void FindMissingUnits(Inspection& deck);  // units-default

// supports
void FindReplacedSupports(Inspection& deck);   // replaced-support
void FindValuesWithoutCode(Inspection& deck);  // value-without-code
void FindSprings(Inspection& deck);            // spring

// loads
void FindNoLoads(Inspection& deck);         // no-loads
void FindLoadsOnFixed(Inspection& deck);    // load-on-fixed
void FindDuplicateLoads(Inspection& deck);  // duplicate-load
void FindGravity(Inspection& deck);         // gravity
void FindNoEffectLoads(Inspection& deck);   // no-effect-load

// nodes
void FindUnusedNodes(Inspection& deck);      // unused
void FindOrphanNodes(Inspection& deck);      // orphan-node
void FindCoincidentNodes(Inspection& deck);  // coincident-nodes
void FindCrossingMembers(Inspection& deck);  // crossing-members
void FindParts(Inspection& deck);            // disconnected

// elements
void FindZeroSizes(Inspection& deck);        // zero-size
void FindBadShapes(Inspection& deck);        // bad-shape
void FindOppositeNormals(Inspection& deck);  // opposite-normals
void FindCornerDiagonals(Inspection& deck);  // corner-diagonal
void FindModelRefusals(Inspection& deck);    // model

// hinges
void FindFirstHinges(Inspection& deck);   // hinge-first
void FindSharedHinges(Inspection& deck);  // hinge-shared

void FindCosts(Inspection& deck);  // cost

}  // namespace kestol

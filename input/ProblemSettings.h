#pragma once

namespace kestol {

struct Statement;

// The keywords of the problem section that are no section: what each sets in the project. A value
// that is not accepted ends the reading with the keyword's own message.

void SetUnitsMesh(Statement& s);
void SetUnitsMatAndLoad(Statement& s);
void SetUnitsRes(Statement& s);
void SetConvertTo6Nodes(Statement& s);
void SetMainStresses(Statement& s);
void SetMainAndLocalStresses(Statement& s);
void SetNumOfDivisions(Statement& s);
void SetDoSmoothing(Statement& s);
void SetCoplanarityAngle(Statement& s);
void SetSolver(Statement& s);            ///< with the further values of Sparse
void SetGravityDirection(Statement& s);  ///< three values

}  // namespace kestol

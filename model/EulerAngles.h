#pragma once

#include "algebra/ReaVec3.h"

class Matriu;

/// R = Rz(Euler3) Ry(Euler2) Rx(Euler1), angles in radians; the columns of the 3x3 R are the
/// local axes in global components.
void EulerRotation(double Euler1, double Euler2, double Euler3, Matriu& R);

/// The three angles of EulerRotation that give the 3x3 frame R (upper left block of a larger one):
/// the first and third in [0, 2 pi), the second in [-pi/2, pi/2].
ReaVec3 FrameToAngles(const Matriu& R);

/// Mean of two, or of three, sets of such angles, taken the short way round.
ReaVec3 MeanAngles(const ReaVec3& a, const ReaVec3& b);
ReaVec3 MeanAngles(const ReaVec3& a, const ReaVec3& b, const ReaVec3& c);

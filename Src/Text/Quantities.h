#pragma once

// For what is compiled once for each quantity.
#define VEK_FOR_EACH_QUANTITY(DO) DO(Length) DO(Area) DO(Volume) DO(Angle) DO(Percent)

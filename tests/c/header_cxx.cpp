// sparlane/c.h on its own, as C++ under the strict warnings.
#include <sparlane/c.h>

int SparlaneHeaderCheckCxx();
int SparlaneHeaderCheckCxx() { return static_cast<int>(sizeof(sparlane_parameter_t)); }

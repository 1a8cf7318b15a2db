/* sparlane/c.h on its own, as C99 under the strict warnings. */
#include <sparlane/c.h>

int sparlane_header_check_c99(void);
int sparlane_header_check_c99(void) { return (int)sizeof(sparlane_parameter_t); }

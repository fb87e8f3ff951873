// A host with nothing but the component.
#include "kpTables/CTables.h"

int main() { return kpTables::CTables().Version().empty() ? 1 : 0; }

// The numbers of the resources.
#pragma once

#define IDB_PICTURE 101
// For the tool boxes of form designers, which find the number in the registry.
#define IDB_TOOLBOX 102

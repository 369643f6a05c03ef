// The numbers of the resources. The picture also stands in the registry, for the tool boxes of
// form designers.
#pragma once

#define IDB_PICTURE 101

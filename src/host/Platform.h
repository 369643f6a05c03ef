// What SystemHost asks of the running platform; one body per platform. Texts are UTF-8.
#pragma once

#include <string>
#include <vector>

#include "marlune/Host.h"

namespace marlune::platform {

// Local date and time: days since 30/12/1899, with fraction.
double localNow();

// The decimal separator of the user's locale: '.' or ','.
char decimalSeparator();

// What separates two lines inside a message box.
std::string lineBreak();

// The user's documents folder, without a trailing separator. It may not exist.
std::string documentsFolder();

// The folder of the running program.
std::string applicationFolder();

// The device that a COM number means when the program bound none; empty when there is none.
std::string portDevice(int number);

// The mounted drives, in the system's order.
std::vector<Drive> mountedDrives();

}  // namespace marlune::platform

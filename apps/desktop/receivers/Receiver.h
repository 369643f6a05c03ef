// A receiver that the user may choose: a port, and who is known to be there.
#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>
#include <string>

#include "finder/Ports.h"

namespace marlune::desktop {

struct Receiver {
    finder::PortEntry port;
    std::string mark;  // the family; empty until it is known
    QString identity;  // what it says it is; empty until it was asked
    QString note;      // why nobody was asked there, or that nobody answered

    [[nodiscard]] QString path() const { return QString::fromStdString(port.path); }
    [[nodiscard]] bool isVirtual() const { return port.kind == finder::PortKind::builtIn; }
    // What a list shows of it.
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
};

}  // namespace marlune::desktop

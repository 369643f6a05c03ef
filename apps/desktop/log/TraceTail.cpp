#include "desktop/log/TraceTail.h"

#include <QtCore/QFile>
#include <algorithm>

#include "base/CodePage.h"

namespace marlune::desktop {

QString TraceTail::next() {
    constexpr qint64 kLongest = qint64{1} << 20;  // of a burst, the end is what helps
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    if (file.size() < read_) {
        read_ = 0;
    }
    file.seek(std::max(read_, file.size() - kLongest));
    const qint64 begin = file.pos();
    const QByteArray bytes = file.readAll();
    const qsizetype whole = bytes.lastIndexOf('\n') + 1;
    read_ = begin + whole;
    return QString::fromStdString(fromAnsi(bytes.left(whole).toStdString()))
        .remove(QLatin1Char('\r'));
}

}  // namespace marlune::desktop

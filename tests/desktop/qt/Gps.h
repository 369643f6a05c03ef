// The widget as tests meet it: members are called by their names, as a form does it that is wired
// in Designer, and what is waited for has a bound.
#pragma once

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <functional>

#include "marlune/qt/GpsControlWidget.h"
#include "receivers/BuiltIn.h"

namespace marlune::qt {

class Gps : public GpsControlWidget {
public:
    static constexpr int kLongest = 30000;  // ms

    // On that receiver's line.
    explicit Gps(const receivers::BuiltIn& receiver, const QString& mark = "GRM") {
        setDevice(QString::fromStdString(receiver.path()));
        SetGpsMark(mark);
    }

    // Calls a member, and waits until it has ended. An empty text as a result is invalid.
    QVariant run(const char* member, const QVariantList& arguments = {}) {
        call(member, arguments);
        return resultOf(member);
    }
    void call(const char* member, const QVariantList& arguments = {}) {
        QGenericArgument list[2];
        for (qsizetype i = 0; i < arguments.size(); ++i) {
            list[i] = QGenericArgument(arguments[i].typeName(), arguments[i].constData());
        }
        QVERIFY2(QMetaObject::invokeMethod(this, member, list[0], list[1]), member);
    }
    // What a member gives that was called; "" when it does not end in time. Ends that nobody asked
    // for are passed over.
    QVariant resultOf(const char* member) {
        QVariant result("");
        (void)QTest::qWaitFor([&] { return takeEnd(member, result); }, kLongest);
        return result;
    }

    QSignalSpy ended{this, &GpsControlWidget::memberEnded};
    QSignalSpy connection{this, &GpsControlWidget::connectionChanged};
    // Whoever listens takes them: the control does not wait for an answer.
    QSignalSpy boxes{this, &GpsControlWidget::messageBox};
    QSignalSpy finished{this, &GpsControlWidget::transferFinished};

private:
    bool takeEnd(const char* member, QVariant& result) {
        while (!ended.isEmpty()) {
            const QVariantList end = ended.takeFirst();
            if (end[0].toString() == member) {
                result = end[1];
                return true;
            }
        }
        return false;
    }
};

}  // namespace marlune::qt

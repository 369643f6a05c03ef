#include "cli/BuiltInReceiver.h"

#include "cli/Interrupt.h"
#include "receivers/Families.h"
#include "receivers/PtyRunner.h"

namespace marlune::cli {
namespace {

std::unique_ptr<receivers::VirtualReceiver> makeReceiver(const std::string& family,
                                                         const std::string& unit) {
    receivers::ReceiverOptions options;
    options.unit = unit;
    return receivers::receiverFamily(family).make(options);
}

}  // namespace

struct BuiltInReceiver::Impl {
    explicit Impl(std::unique_ptr<receivers::VirtualReceiver> receiver)
        : runner(std::move(receiver), {}) {}

    receivers::PtyRunner runner;
};

BuiltInReceiver::BuiltInReceiver(const std::string& family, const std::string& unit)
    : impl_(std::make_unique<Impl>(makeReceiver(family, unit))) {
    const SignalsHeld held;
    impl_->runner.start();
}

BuiltInReceiver::~BuiltInReceiver() = default;

const std::string& BuiltInReceiver::path() const {
    return impl_->runner.path();
}

}  // namespace marlune::cli

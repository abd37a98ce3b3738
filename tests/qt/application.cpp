#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace {

// The one application object of the process. The platform is chosen here too, so that the test program also
// runs by itself.
class Application : public testing::Environment {
public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QApplication>(count_, arguments_);
    }
    void TearDown() override { application_.reset(); }

private:
    char name_[8] = "qt_test";
    char* arguments_[2] = {name_, nullptr};
    int count_ = 1;
    std::unique_ptr<QApplication> application_;
};

const auto* const application = testing::AddGlobalTestEnvironment(new Application);

}  // namespace

#pragma once

// The few headers that nearly every file here reads. Umbrella headers would cost more than they save.
#include <QAbstractButton>
#include <QApplication>
#include <QObject>
#include <QString>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

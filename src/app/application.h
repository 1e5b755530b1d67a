#pragma once

#include <QApplication>

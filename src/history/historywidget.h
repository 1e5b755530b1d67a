#pragma once

#include <QWidget>

#include "ui/negativebutton.h"

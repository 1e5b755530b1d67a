#include "ui/positivebutton.h"

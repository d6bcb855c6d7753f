#include "module/style/style.h"

CDimStyle CDimStyle::s_instance;

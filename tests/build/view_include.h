#include "view/CNetworkView.h"

#include <iostream>

#include "vex/vex.h"

int main() {
  auto recs = vex::TNameValueArrayRec::Create(u';', u'=');
  recs.AddNameValue(u"a", u"1");
  recs.AddNameValue(u"b", u"2");
  std::cout << vex::ToUtf8(recs.JoinRecs()) << "\n";  // a=1;b=2
  std::cout << vex::ToUtf8(vex::Format(u"%s %.3d", {u"Beam", 7})) << "\n";  // Beam 007
}

#pragma once

#include <string>

#include "ModelTest.h"
#include "StandardXMLFormat.h"
#include "VyrAnnStandardXMLParserDOMCodec.h"

namespace modeltest {

/// A standard file with this content of its document element, which begins on line 1.
inline std::string Standard(const std::string& content,
                            const std::string& attributes = " name=\"drafting\"") {
  return std::string("<std:node xmlns:std=\"") + kStandardNamespace + "\"" + attributes + ">" +
         content + "</std:node>";
}

/// A codec on three tops of its own.
class CodecTest : public ModelTest {
 protected:
  CodecTest()
      : typeDefs(NewNode("TypeDef", Node::NodeTop)),
        enums(NewNode("Enum", Node::NodeTop)),
        root(NewNode("Root", Node::NodeTop)) {
    EXPECT_EQ(codec.Init(typeDefs.Get(), enums.Get(), root.Get()), S_OK);
  }

  HRESULT Decode(const std::string& content) { return codec.DecodeXMLString(Standard(content)); }
  std::string DescribeTops() const {
    return Describe(*enums) + "\n" + Describe(*typeDefs) + "\n" + Describe(*root);
  }

  Node_var typeDefs;
  Node_var enums;
  Node_var root;
  VyrAnnStandardXMLParserDOMCodec codec;
};

}  // namespace modeltest

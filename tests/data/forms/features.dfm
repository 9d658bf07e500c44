inherited MainForm: TMainForm
  Left = 0
  Top = -32768
  Width = 2147483647
  Height = -2147483648
  Big = 9223372036854775807
  Small = -9223372036854775808
  Caption = 'Main '#1054#1082#1085#1086
  Hint = ''
  Quote = 'It'#39's'
  Controls = #0#9#13#10'x'#127#160
  Surrogates = 'Zoom '#55357#56589
  Visible = True
  Enabled = False
  PopupMenu = nil
  Value = Null
  Align = alClient
  DataSource = DataModule1.DataSource1
  Options = [eoAutoIndent, eoDragDropEditing]
  Font.Style = []
  Ratio = 1.500000000000000000
  Stamp = 40273.547337048610000000
  Tiny = -0.000310000000000005
  Zero = 0.000000000000000000
  Third = 0.333333333333333300
  Huge = 1.5E20
  Scale = 0.5s
  Money = 922337203685477.5807c
  MoneyNeg = -12.34c
  When = 0.999988425925926d
  Empty = {}
  Bin31 = {01264B7095BADF04294E7398BDE2072C51769BC0E50A2F54799EC3E80D3257}
  Bin32 = {
    02274C7196BBE0052A4F7499BEE3082D52779CC1E60B30557A9FC4E90E33587D}
  Bin100 = {
    03284D7297BCE1062B50759ABFE4092E53789DC2E70C31567BA0C5EA0F34597E
    A3C8ED12375C81A6CBF0153A5F84A9CEF3183D6287ACD1F61B40658AAFD4F91E
    43688DB2D7FC21466B90B5DAFF24496E93B8DD02274C7196BBE0052A4F7499BE
    E3082D52}
  LongText = 
    'The quick brown fox jumps over the lazy dog and keeps on running' +
    ' '
  CutAfterCode = 
    'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx'#39 +
    #39'rest'
  LongCyrillic = 
    #1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046#1046 +
    'end'
  Lines.Strings = (
    'short'
    ''
    
      'The quick brown fox jumps over the lazy dog and keeps on running' +
      ' ')
  Sizes = (
    1
    2.500000000000000000
    Ident
    (
      3
      4)
    {
      04294E7398BDE2072C51769BC0E50A2F54799EC3E80D32577CA1C6EB10355A7F
      A4C9EE13385D82A7})
  EmptyList = ()
  Columns = <
    item
      Width = 10
      Sub = <
        item
          Name = 'a'
          Data = {
            052A4F7499BEE3082D52779CC1E60B30557A9FC4E90E33587DA2C7EC11365B80
            A5}
        end>
    end
    item
    end>
  NoColumns = <>
  Indexed = <
    item [3]
      X = 1
    end>
  object Panel1: TPanel [0]
    Left = 1
    inline Frame1: TFrame1 [1]
      inherited Label1: TLabel
        Caption = 'x'
      end
    end
  end
  object TPage
  end
  object Panel2: TPanel
  end
end

object frmGauges: TForm
  Left = 0
  Top = 0
  Width = 360
  Height = 200
  Caption = 'Gauges (with classes this library does not know)'
  Colour = 12
  object lblTitle: TLabel
    Left = 12
    Top = 8
    Width = 300
    Height = 16
    Caption = 'Pressure and flow'
  end
  object gaugePressure: TRadialGauge
    Left = 12
    Top = 32
    Width = 160
    Height = 120
    Needle = 42
  end
  object gaugeFlow: TRadialGauge
    Left = 184
    Top = 32
    Width = 160
    Height = 120
  end
  object btnClose: TButton
    Left = 264
    Top = 160
    Width = 80
    Height = 26
    Caption = 'Close'
    ModalResult = 'yes'
  end
end

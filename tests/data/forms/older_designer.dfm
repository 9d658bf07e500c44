object OldForm: TOldForm
  Caption = 'Angle (°):'
  Font.Name = 'ËÎÌå'
  Euro = '€ 5'
  LWSensitivity = 0.1
  Increment = 1E-5
  Small = 0.0001
  Date = 32033.6837020255
  Whole = 1
  Big = 1.23456789012345E20
  Code = #1046
end
